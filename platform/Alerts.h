#pragma once

#include <string_view>

namespace vigilo::platform {

/// Warnings that the user has to dismiss.
class Alerts {
public:
    virtual ~Alerts() = default;

    /// Shows one modal warning with the platform's default button and returns once it is dismissed
    /// or the program is asked to end. Both texts are UTF-8. Main thread; timers go on meanwhile.
    virtual void warn(std::string_view message, std::string_view informativeText) = 0;
};

} // namespace vigilo::platform
