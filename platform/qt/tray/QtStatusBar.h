#pragma once

#include "platform/StatusBar.h"
#include "platform/linux/tray/StatusNotifierWatcher.h"

#include <functional>
#include <string>

namespace vigilo::platform {

class QtWindows;
class SessionBus;

/// The panel as this desktop has it: a StatusNotifierItem where a panel hosts such items, a window
/// in the tray of an X11 panel where that is all there is, and nothing where there is neither.
class QtStatusBar : public StatusBar {
public:
    /// `onActivationToken` hears what lets a window come to the front, where a panel gives that.
    /// The windows and the bus outlive it and its items.
    QtStatusBar(QtWindows& windows, SessionBus& bus,
                std::function<void(const std::string&)> onActivationToken);

    std::unique_ptr<StatusItem> makeStatusItem(StatusItemSpec spec) override;

private:
    QtWindows& windows_;
    SessionBus& bus_;
    QDBusPendingCall hostQuestion_; ///< asked long before there is an item
    std::function<void(const std::string&)> onActivationToken_;
};

} // namespace vigilo::platform
