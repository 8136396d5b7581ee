// Takes and gives back power assertions as told on standard input, for tests that watch from
// outside: "create" prints the status and the id, "release ID" lets go, the end of the input ends
// it.
#include "platform/linux/power/DesktopPowerAssertions.h"

#include <cstdio>
#include <iostream>
#include <sstream>
#include <string>

#include <QCoreApplication>
#include <QSocketNotifier>

#include <unistd.h>

namespace {

void obey(vigilo::platform::DesktopPowerAssertions& assertions, const std::string& line) {
    std::istringstream words(line);
    std::string command;
    words >> command;
    if (command == "create") {
        const auto assertion =
            assertions.create("PreventUserIdleSystemSleep", 255, "Keeping the test awake");
        std::printf("%d %u\n", assertion.status, assertion.id);
    } else if (command == "release") {
        std::uint32_t id = 0;
        words >> id;
        assertions.release(id);
        std::puts("released");
    } else if (command == "child") {
        // What a program started by ours inherits.
        std::printf("%d\n", std::system("sleep 20 >/dev/null 2>&1 &"));
    }
    std::fflush(stdout);
}

} // namespace

int main(int argc, char* argv[]) {
    const QCoreApplication application(argc, argv);
    vigilo::platform::DesktopPowerAssertions assertions;
    QSocketNotifier input(STDIN_FILENO, QSocketNotifier::Read);
    QObject::connect(&input, &QSocketNotifier::activated, [&] {
        std::string line;
        if (!std::getline(std::cin, line)) {
            QCoreApplication::quit();
            return;
        }
        obey(assertions, line);
    });
    std::puts("ready");
    std::fflush(stdout);
    return QCoreApplication::exec();
}
