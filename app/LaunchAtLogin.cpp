#include "app/LaunchAtLogin.h"

#include <optional>

namespace vigilo {

using platform::LoginItemStatus;

LaunchAtLoginMenuItem launchAtLoginMenuItem(const platform::LoginItem& loginItem) {
    using CheckState = LaunchAtLoginMenuItem::CheckState;
    switch (loginItem.status()) {
    case LoginItemStatus::enabled:
        return {.title = "Launch at Login", .state = CheckState::on};
    case LoginItemStatus::requiresApproval:
        return {.title = "Launch at Login — Approval Required", .state = CheckState::mixed};
    case LoginItemStatus::notRegistered:
    case LoginItemStatus::notFound:
        break;
    }
    return {.title = "Launch at Login", .state = CheckState::off};
}

bool toggleLaunchAtLogin(platform::LoginItem& loginItem, platform::Alerts& alerts) {
    const LoginItemStatus status = loginItem.status();
    if (status == LoginItemStatus::requiresApproval) {
        loginItem.openSettings();
        return true;
    }
    const std::optional<std::string> error =
        status == LoginItemStatus::enabled ? loginItem.unregisterItem() : loginItem.registerItem();
    if (error) {
        alerts.warn("Couldn’t update Launch at Login", *error);
    }
    return !error;
}

} // namespace vigilo
