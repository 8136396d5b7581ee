#pragma once

#include <string_view>

namespace vigilo::platform {

/// Warnings that the user has to dismiss.
class Alerts {
public:
    virtual ~Alerts() = default;

    /// Shows one modal warning with the platform's default button and returns once it is dismissed
    /// or the program is asked to end. Both texts are UTF-8. Main thread; timers go on meanwhile.
    /// What one of them asks for while another is shown is left out when it says the same, else
    /// shown after it, and the call returns at once: however often something fails, there is one
    /// warning to dismiss.
    virtual void warn(std::string_view message, std::string_view informativeText) = 0;
};

} // namespace vigilo::platform
