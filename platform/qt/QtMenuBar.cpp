#include "platform/qt/QtMenuBar.h"

#include <utility>

namespace vigilo::platform {

QtMenuBar::QtMenuBar() {
    const QDBusConnection bus = QDBusConnection::sessionBus();
    if (bus.isConnected()) {
        launcherEntry_ = std::make_unique<LauncherEntry>(
            bus, MenuRequests{.onAction =
                                  [this](const std::string& action) {
                                      if (requests_.onAction) {
                                          requests_.onAction(action);
                                      }
                                  },
                              .onWillOpen =
                                  [this] {
                                      if (requests_.onWillOpen) {
                                          requests_.onWillOpen();
                                      }
                                  }});
    }
}

void QtMenuBar::observe(MenuRequests requests) {
    mainMenu_.observe(requests);
    requests_ = std::move(requests);
}

void QtMenuBar::setMainMenu(const Menu& menu) {
    mainMenu_.setItems(menu.items.empty() ? std::vector<MenuItem>() : menu.items.front().submenu);
}

void QtMenuBar::setDockMenu(const Menu& menu) {
    if (launcherEntry_) {
        launcherEntry_->setMenu(menu);
    }
}

} // namespace vigilo::platform
