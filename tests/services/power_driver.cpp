// Takes and gives back power assertions as told on standard input, for tests that watch from
// outside: "create" prints the status, the id and the milliseconds it took, "release ID" lets go,
// the end of the input ends it. With the argument "sandboxed" only the desktop portal is asked.
#include "platform/linux/power/DesktopPowerAssertions.h"

#include "platform/qt/QtRunLoop.h"

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <iostream>
#include <sstream>
#include <string>
#include <string_view>

#include <QCoreApplication>
#include <QDBusConnection>
#include <QSocketNotifier>

#include <unistd.h>

namespace {

void obey(vigilo::platform::DesktopPowerAssertions& assertions, const std::string& line) {
    std::istringstream words(line);
    std::string command;
    words >> command;
    if (command == "create") {
        const auto before = std::chrono::steady_clock::now();
        const auto assertion =
            assertions.create("PreventUserIdleSystemSleep", 255, "Keeping the test awake");
        const auto taken = std::chrono::duration_cast<std::chrono::milliseconds>(
            std::chrono::steady_clock::now() - before);
        std::printf("%d %u %ld\n", assertion.status, assertion.id, taken.count());
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

/// Takes and gives back until the end of the input; the status to end with.
int run(bool isSandboxed) {
    vigilo::platform::QtRunLoop runLoop;
    vigilo::platform::DesktopPowerAssertions assertions(runLoop, isSandboxed);
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
    const int status = QCoreApplication::exec();
    if (assertions.isRequestUnderWay()) {
        std::_Exit(status);
    }
    return status;
}

} // namespace

int main(int argc, char* argv[]) {
    const QCoreApplication application(argc, argv);
    const int status = run(argc > 1 && std::string_view(argv[1]) == "sandboxed");
    // The library sends the last calls from a thread of its own and forgets those that it has not
    // come to when the process ends. It takes this after them, and answers.
    QDBusConnection::connectToBus(QStringLiteral("unix:path=/nonexistent/bus"),
                                  QStringLiteral("last"));
    return status;
}
