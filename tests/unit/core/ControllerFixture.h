#pragma once

#include "core/AwakeController.h"
#include "tests/fakes/FakeDesktop.h"
#include "tests/fakes/FakePowerAssertions.h"
#include "tests/fakes/FakeRunLoop.h"
#include "tests/fakes/FakeWallClock.h"

#include <gtest/gtest.h>

#include <chrono>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace vigilo {

using namespace std::chrono_literals;

/// A controller on fakes that writes down its callbacks in order.
class ControllerFixture : public testing::Test {
protected:
    ControllerFixture() {
        clock.timePerRead = 1us;
        controller->onStateChange = [this] { callbacks.emplace_back("onStateChange"); };
        controller->onStatusRefresh = [this] { callbacks.emplace_back("onStatusRefresh"); };
        controller->onAgentLockRequested = [this] {
            callbacks.emplace_back("onAgentLockRequested");
        };
        controller->onSessionEnded = [this] { callbacks.emplace_back("onSessionEnded"); };
        controller->onAgentLockExpired = [this] { callbacks.emplace_back("onAgentLockExpired"); };
    }

    /// The callbacks fired since the last call.
    std::vector<std::string> fired() { return std::exchange(callbacks, {}); }

    using Names = std::vector<std::string>;

    fakes::FakeWallClock clock;
    fakes::FakeRunLoop runLoop{clock};
    fakes::FakePowerAssertions power;
    fakes::FakeSystemLock systemLock;
    fakes::FakeWorkspace workspace;
    fakes::FakeAlerts alerts;
    std::vector<AgentSession> agents; ///< what the next scan finds
    std::vector<std::string> callbacks;
    std::shared_ptr<AwakeController> controller =
        std::make_shared<AwakeController>(AwakeController::Environment{
            .runLoop = runLoop,
            .wallClock = clock,
            .powerAssertions = power,
            .systemLock = systemLock,
            .workspace = workspace,
            .alerts = alerts,
            .readAgentProcesses = [this] { return agents; },
        });
};

} // namespace vigilo
