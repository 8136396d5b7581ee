#include "app/LaunchAtLogin.h"

#include <optional>

namespace vigilo {

using platform::CheckState;
using platform::LoginItemStatus;
using platform::MenuItem;

namespace {

CheckState checkState(LoginItemStatus status) {
    switch (status) {
    case LoginItemStatus::enabled:
        return CheckState::on;
    case LoginItemStatus::requiresApproval:
        return CheckState::mixed;
    case LoginItemStatus::notRegistered:
    case LoginItemStatus::notFound:
        break;
    }
    return CheckState::off;
}

} // namespace

MenuItem launchAtLoginMenuItem(const platform::LoginItem& loginItem) {
    const bool needsApproval = loginItem.status() == LoginItemStatus::requiresApproval;
    return {.title = needsApproval ? "Launch at Login — Approval Required" : "Launch at Login",
            .action = "toggleLaunchAtLogin",
            .checkState = checkState(loginItem.status())};
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
