#include "app/LaunchAtLogin.h"

#include <optional>

namespace vigilo {

using platform::CheckState;
using platform::LoginItemStatus;
using platform::MenuItem;

MenuItem launchAtLoginMenuItem(const platform::LoginItem& loginItem) {
    MenuItem item{
        .title = "Launch at Login", .action = "toggleLaunchAtLogin", .checkState = CheckState::off};
    switch (loginItem.status()) {
    case LoginItemStatus::enabled:
        item.checkState = CheckState::on;
        break;
    case LoginItemStatus::requiresApproval:
        item.title = "Launch at Login — Approval Required";
        item.checkState = CheckState::mixed;
        break;
    case LoginItemStatus::notRegistered:
    case LoginItemStatus::notFound:
        break;
    }
    return item;
}

bool toggleLaunchAtLogin(platform::LoginItem& loginItem, platform::Alerts& alerts) {
    std::optional<std::string> error;
    if (loginItem.status() == LoginItemStatus::enabled) {
        error = loginItem.unregisterItem();
    } else if (loginItem.status() == LoginItemStatus::requiresApproval) {
        loginItem.openSettings();
    } else {
        error = loginItem.registerItem();
    }
    if (error) {
        alerts.warn("Couldn’t update Launch at Login", *error);
    }
    return !error;
}

} // namespace vigilo
