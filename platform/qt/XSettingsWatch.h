#pragma once

#include "platform/linux/workspace/XSettings.h"
#include "platform/qt/ManagerSelection.h"

#include <functional>
#include <optional>

namespace vigilo::platform {

/// Follows the settings that an X11 desktop hands out to all programs. Main thread.
class XSettingsWatch {
public:
    /// `onSettings` is called at once and, from the event loop, whenever they change; with none
    /// where nobody hands any out. What it is given lasts as long as the call.
    explicit XSettingsWatch(std::function<void(const XSettings&)> onSettings);

private:
    void tell() const;

    std::function<void(const XSettings&)> onSettings_;
    std::optional<ManagerSelection> selection_; ///< none where there is no X server
};

} // namespace vigilo::platform
