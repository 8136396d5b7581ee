#pragma once

#include "platform/StatusBar.h"
#include "platform/linux/bus/SessionBus.h"
#include "platform/linux/tray/MenuExport.h"
#include "platform/linux/tray/StatusNotifierItem.h"
#include "platform/linux/tray/StatusNotifierWatcher.h"
#include "platform/qt/frame/MenuModel.h"
#include "platform/qt/tray/EmbeddedIcon.h"
#include "platform/qt/tray/MenuWindow.h"

#include <functional>
#include <optional>
#include <string>

namespace vigilo::platform {

/// The status item by whichever means the panel of the moment understands, on the session bus of
/// the moment. Main thread.
class QtStatusItem : public StatusItem {
public:
    /// `isHostKnown` as for StatusNotifierWatcher, `onActivationToken` as for QtStatusBar.
    QtStatusItem(StatusItemSpec spec, QtWindows& windows, SessionBus& bus, bool isHostKnown,
                 std::function<void(const std::string&)> onActivationToken);

    void setMenu(const Menu& menu) override;
    void setImage(const StatusImage& image) override;
    void setToolTip(std::string_view text) override;

private:
    void busChanged(bool isHostKnown);
    void showOnBus();
    void embed(bool isWanted);
    void openMenu(const QPoint& place);

    StatusItemSpec spec_;
    QtWindows& windows_;
    SessionBus& bus_;
    std::function<void(const std::string&)> onActivationToken_;
    Menu shownMenu_;
    StatusImage image_;
    std::string toolTip_;
    MenuModel model_;
    std::optional<MenuExport> menu_; ///< this and the next two none without a session bus
    std::optional<StatusNotifierItem> item_;
    std::optional<StatusNotifierWatcher> watcher_;
    std::optional<MenuWindow> menuWindow_; ///< made when it is first wanted
    std::optional<EmbeddedIcon> embedded_; ///< while no panel hosts the item
};

} // namespace vigilo::platform
