#pragma once

#include "platform/MenuBar.h"
#include "platform/linux/bus/SessionBus.h"
#include "platform/linux/tray/LauncherEntry.h"
#include "platform/qt/frame/MenuModel.h"

#include <memory>

namespace vigilo::platform {

/// The main menu as a model for the frame of the main window, since no bar at the top is ours, and
/// the dock menu as docks read it over the session bus.
class QtMenuBar : public MenuBar {
public:
    /// The bus outlives it.
    explicit QtMenuBar(SessionBus& bus);

    void observe(MenuRequests requests) override;
    void setMainMenu(const Menu& menu) override;
    void setDockMenu(const Menu& menu) override;

    /// The lines of the first menu of the main menu.
    MenuModel& mainMenu() { return mainMenu_; }

private:
    void busChanged();
    MenuRequests dockRequests();

    SessionBus& bus_;
    MenuModel mainMenu_;
    Menu dockMenu_;
    MenuRequests requests_;
    std::unique_ptr<LauncherEntry> launcherEntry_; ///< none without a session bus
};

} // namespace vigilo::platform
