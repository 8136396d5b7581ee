#pragma once

#include "platform/qt/ManagerSelection.h"

#include <cstdint>
#include <functional>
#include <optional>

#include <QColor>

namespace vigilo::platform {

/// The tray of an X11 panel, by the System Tray Protocol Specification: which one there is, and
/// when it comes and goes. Make it on X11 only. Main thread.
class TrayManager {
public:
    /// `onChanged` is called from the event loop whenever another tray, or none, is there, or the
    /// tray has changed its colours.
    explicit TrayManager(std::function<void()> onChanged);

    /// Whether there is one now.
    bool isPresent() const { return selection_.owner() != 0; }

    /// Whether pictures on it may have transparent parts.
    bool isTranslucent() const;

    /// The colour in which it wants pictures on it drawn; none where it does not say.
    std::optional<QColor> foreground() const;

    /// Asks it to take a window in.
    void dock(std::uint32_t window) const;

    /// The colour of the tray where one of our windows in it is; black when it cannot be told.
    static QColor colourBehind(std::uint32_t window);

private:
    ManagerSelection selection_;
};

} // namespace vigilo::platform
