// What a tick costs that changes no text: the status menu is made anew, its login item read from a
// real autostart folder, and found to be the same.
#include "app/LaunchAtLogin.h"
#include "app/Menus.h"
#include "platform/linux/login/XdgLoginItem.h"
#include "platform/linux/tray/MenuExport.h"
#include "tests/fakes/FakeDesktop.h"
#include "tests/fakes/FakePowerAssertions.h"
#include "tests/fakes/FakeRunLoop.h"
#include "tests/fakes/FakeWallClock.h"

#include <benchmark/benchmark.h>

#include <cstdlib>
#include <filesystem>
#include <memory>
#include <string>
#include <system_error>
#include <vector>

namespace {

using namespace vigilo;

struct Session {
    fakes::FakeWallClock clock;
    fakes::FakeRunLoop runLoop{clock};
    fakes::FakePowerAssertions power;
    fakes::FakeSystemLock systemLock;
    fakes::FakeWorkspace workspace;
    fakes::FakeAlerts alerts;
    std::shared_ptr<AwakeController> controller =
        std::make_shared<AwakeController>(AwakeController::Environment{
            .runLoop = runLoop,
            .wallClock = clock,
            .powerAssertions = power,
            .systemLock = systemLock,
            .workspace = workspace,
            .alerts = alerts,
            .readAgentProcesses = [] { return std::vector<AgentSession>(); }});
};

struct TemporaryFolder {
    TemporaryFolder() {
        std::string pattern = std::filesystem::temp_directory_path() / "vigilo-bench-XXXXXX";
        path = mkdtemp(pattern.data()) == nullptr ? std::string() : pattern;
    }
    ~TemporaryFolder() {
        std::error_code ignored;
        std::filesystem::remove_all(path, ignored);
    }
    TemporaryFolder(const TemporaryFolder&) = delete;
    TemporaryFolder& operator=(const TemporaryFolder&) = delete;

    std::string path;
};

void unchangedStatusMenu(benchmark::State& state) {
    const Session session;
    session.controller->start(90);
    platform::AutostartEnvironment environment = platform::autostartEnvironment();
    const TemporaryFolder folder;
    environment.configHome = folder.path;
    platform::XdgLoginItem loginItem(environment);
    if (loginItem.registerItem()) {
        state.SkipWithError("the login item cannot be registered");
        return;
    }
    platform::MenuExport installed(QDBusConnection(QStringLiteral("none")), QStringLiteral("/menu"),
                                   {.onAction = nullptr, .onWillOpen = nullptr});
    while (state.KeepRunning()) {
        installed.setMenu(statusMenu(*session.controller, launchAtLoginMenuItem(loginItem)));
    }
}
BENCHMARK(unchangedStatusMenu);

} // namespace

BENCHMARK_MAIN();
