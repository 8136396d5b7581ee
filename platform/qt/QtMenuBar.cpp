#include "platform/qt/QtMenuBar.h"

#include <utility>

namespace vigilo::platform {

QtMenuBar::QtMenuBar(SessionBus& bus) : bus_(bus) {
    QObject::connect(&bus_, &SessionBus::changed, &mainMenu_, [this] { busChanged(); });
    busChanged();
}

void QtMenuBar::observe(MenuRequests requests) {
    mainMenu_.observe(requests);
    requests_ = std::move(requests);
}

void QtMenuBar::setMainMenu(const Menu& menu) {
    mainMenu_.setItems(menu.items.empty() ? std::vector<MenuItem>() : menu.items.front().submenu);
}

void QtMenuBar::setDockMenu(const Menu& menu) {
    dockMenu_ = menu;
    if (launcherEntry_) {
        launcherEntry_->setMenu(dockMenu_);
    }
}

void QtMenuBar::busChanged() {
    launcherEntry_.reset();
    if (bus_.connection().isConnected()) {
        launcherEntry_ = std::make_unique<LauncherEntry>(bus_.connection(), dockRequests());
        if (!dockMenu_.items.empty()) {
            launcherEntry_->setMenu(dockMenu_);
        }
    }
}

MenuRequests QtMenuBar::dockRequests() {
    return {.onAction =
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
                }};
}

} // namespace vigilo::platform
