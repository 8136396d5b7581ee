#include "app/Menus.h"

#include <cstddef>
#include <utility>

namespace vigilo {

using platform::Menu;
using platform::MenuItem;

namespace {

constexpr double symbolPointSize = 15;

MenuItem informationalLine(std::string title) {
    return {.title = std::move(title), .isEnabled = false};
}

MenuItem separator() {
    return {.isSeparator = true};
}

MenuItem protectionToggle(const AwakeController& controller, char keyEquivalent = '\0') {
    return {.title = controller.isActive() ? "Stop Keeping Awake" : "Keep Mac Awake",
            .action = "toggleProtection",
            .keyEquivalent = keyEquivalent};
}

MenuItem agentLockItem(const AwakeController& controller, char keyEquivalent = '\0') {
    return {.title = controller.isActive() ? "Show Agent Lock" : "Start Agent Lock",
            .action = "agentLock",
            .keyEquivalent = keyEquivalent};
}

MenuItem appleLockItem(const AwakeController& controller) {
    return {.title = controller.isActive() ? "Switch to Apple Lock" : "Start with Apple Lock",
            .action = "appleLock"};
}

MenuItem quitItem() {
    return {.title = "Quit Vigilo", .action = "quitApp", .keyEquivalent = 'q'};
}

std::string agentLine(std::size_t count) {
    if (count == 0) {
        return "No agent processes detected";
    }
    return std::to_string(count) + " agent process" + (count == 1 ? "" : "es") + " detected";
}

} // namespace

Menu statusMenu(const AwakeController& controller, const MenuItem& launchAtLogin) {
    Menu menu;
    menu.items.push_back(informationalLine(controller.isActive() ? "Mac is staying awake"
                                                                 : "Mac can sleep normally"));
    if (controller.isActive()) {
        menu.items.push_back(informationalLine(controller.remainingLabel()));
    }
    menu.items.push_back(informationalLine(agentLine(controller.agentSessions().size())));
    menu.items.push_back(separator());
    menu.items.push_back({.title = "Open Vigilo…", .action = "showWindow", .keyEquivalent = 'o'});
    menu.items.push_back(protectionToggle(controller, 'k'));
    menu.items.push_back(agentLockItem(controller, 'l'));
    menu.items.push_back(appleLockItem(controller));
    menu.items.push_back(separator());
    menu.items.push_back(launchAtLogin);
    menu.items.push_back(separator());
    menu.items.push_back(quitItem());
    return menu;
}

platform::StatusImage statusImage(const AwakeController& controller) {
    return {.symbol = controller.isActive() ? "bolt.shield.fill" : "bolt.shield",
            .accessibilityDescription =
                controller.isActive() ? "Vigilo protection on" : "Vigilo protection off",
            .pointSize = symbolPointSize};
}

std::string statusToolTip(const AwakeController& controller) {
    return controller.isActive() ? "Vigilo — Mac is staying awake" : "Vigilo — Normal sleep";
}

Menu mainMenu(const AwakeController& controller, const MenuItem& launchAtLogin) {
    MenuItem program{.title = "Vigilo"};
    program.submenu = {
        {.title = "About Vigilo", .action = "showAbout"},
        separator(),
        {.title = "Show Vigilo", .action = "showWindow", .keyEquivalent = 'o'},
        protectionToggle(controller, 'k'),
        separator(),
        agentLockItem(controller, 'l'),
        appleLockItem(controller),
        separator(),
        {.title = "Lock Screen Settings…", .action = "openLockSettings", .keyEquivalent = ','},
        launchAtLogin,
        separator(),
        quitItem(),
    };
    return {.title = "Main Menu", .items = {std::move(program)}};
}

Menu dockMenu(const AwakeController& controller) {
    return {.title = {},
            .items = {{.title = "Open Vigilo", .action = "showWindow"},
                      protectionToggle(controller),
                      agentLockItem(controller)}};
}

} // namespace vigilo
