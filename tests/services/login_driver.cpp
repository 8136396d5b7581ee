// Asks one thing of the login item of the program that runs, which is this one, for tests that look
// at what others make of it: status, register, unregister or settings. What is answered is printed.
// Started with no such word, as a session starts it, it leaves the file that LOGIN_DRIVER_MARK
// names.
#include "platform/linux/login/XdgLoginItem.h"

#include <array>
#include <cstdlib>
#include <fstream>
#include <iostream>
#include <optional>
#include <string>
#include <string_view>

#include <QCoreApplication>

namespace {

std::string_view name(vigilo::platform::LoginItemStatus status) {
    constexpr std::array<std::string_view, 4> names{"not registered", "enabled",
                                                    "requires approval", "not found"};
    return names.at(static_cast<std::size_t>(status));
}

} // namespace

int main(int argc, char* argv[]) {
    const QCoreApplication application(argc, argv);
    if (argc < 2) {
        std::ofstream(std::getenv("LOGIN_DRIVER_MARK")) << "started\n";
        return EXIT_SUCCESS;
    }
    vigilo::platform::XdgLoginItem item(vigilo::platform::autostartEnvironment());
    const std::string_view command = argv[1];
    if (command == "status") {
        std::cout << name(item.status()) << '\n';
    } else if (command == "register") {
        std::cout << item.registerItem().value_or("done") << '\n';
    } else if (command == "unregister") {
        std::cout << item.unregisterItem().value_or("done") << '\n';
    } else if (command == "settings") {
        item.openSettings();
    }
    return EXIT_SUCCESS;
}
