#include "tests/unit/core/ControllerFixture.h"

#include <limits>

namespace vigilo {
namespace {

class AwakeControllerTest : public ControllerFixture {};

TEST_F(AwakeControllerTest, beginsIdleAndTouchesNothing) {
    EXPECT_FALSE(controller->isActive());
    EXPECT_EQ(controller->sessionLabel(), "Mac can sleep normally");
    EXPECT_EQ(controller->remainingLabel(), "Choose how long to keep it awake");
    EXPECT_TRUE(controller->agentSessions().empty());
    EXPECT_EQ(controller->activeMode(), AwakeMode::visible);
    EXPECT_TRUE(power.requests.empty());
    EXPECT_EQ(runLoop.liveTimers(), 0u);
    EXPECT_EQ(runLoop.backgroundWorkWaiting(), 0u);
}

TEST_F(AwakeControllerTest, asksForOneIdleSleepAssertionWithTheNameThatUsersSee) {
    controller->start(std::nullopt);
    ASSERT_EQ(power.requests.size(), 1u);
    EXPECT_EQ(power.requests[0].type, "PreventUserIdleSystemSleep");
    EXPECT_EQ(power.requests[0].level, 255u);
    EXPECT_EQ(power.requests[0].name,
              "Keeping developer agents and terminal jobs running while the Mac is idle");
}

TEST_F(AwakeControllerTest, staysAwakeUntilStoppedWithoutACountdown) {
    controller->start(std::nullopt, AwakeMode::visible);
    EXPECT_TRUE(controller->isActive());
    EXPECT_EQ(controller->sessionLabel(), "Mac will stay awake");
    EXPECT_EQ(controller->remainingLabel(), "Until you stop it");
    EXPECT_EQ(runLoop.liveTimers(), 0u);
    EXPECT_EQ(fired(), (Names{"onStateChange"}));
    runLoop.advance(24h);
    EXPECT_TRUE(controller->isActive());
    EXPECT_EQ(fired(), Names{});
}

TEST_F(AwakeControllerTest, startsATimedSessionAndShowsItsRemainingTimeAtOnce) {
    controller->start(30);
    EXPECT_TRUE(controller->isActive());
    EXPECT_EQ(controller->sessionLabel(), "Mac will stay awake");
    EXPECT_EQ(controller->remainingLabel(), "29m remaining");
    EXPECT_EQ(runLoop.liveTimers(), 1u);
    EXPECT_EQ(fired(), (Names{"onStatusRefresh", "onStateChange"}));
}

TEST_F(AwakeControllerTest, keepsTheAssertionWhenTheDurationChanges) {
    controller->start(std::nullopt);
    fired();
    controller->start(30, AwakeMode::appleLock);
    EXPECT_EQ(controller->remainingLabel(), "29m remaining");
    EXPECT_EQ(controller->activeMode(), AwakeMode::appleLock);
    EXPECT_EQ(fired(), (Names{"onStatusRefresh", "onStateChange"}));
    controller->start(std::nullopt, AwakeMode::visible);
    EXPECT_EQ(controller->remainingLabel(), "Until you stop it");
    EXPECT_EQ(runLoop.liveTimers(), 0u);
    EXPECT_EQ(fired(), (Names{"onStateChange"}));
    EXPECT_EQ(power.requests.size(), 1u);
    EXPECT_TRUE(power.released.empty());
    controller->stop();
    EXPECT_EQ(power.released.size(), 1u);
    EXPECT_TRUE(power.held.empty());
}

TEST_F(AwakeControllerTest, replacesTheCountdownWhenATimedSessionIsStartedAnew) {
    controller->start(30);
    runLoop.advance(500ms);
    controller->start(60);
    EXPECT_EQ(runLoop.liveTimers(), 1u);
    EXPECT_EQ(controller->remainingLabel(), "59m remaining");
    runLoop.advance(31min);
    EXPECT_TRUE(controller->isActive());
}

TEST_F(AwakeControllerTest, changesNothingWhenTheAssertionIsRefused) {
    power.refusal = -1;
    controller->start(30, AwakeMode::agentLock);
    EXPECT_FALSE(controller->isActive());
    EXPECT_EQ(controller->sessionLabel(), "Mac can sleep normally");
    EXPECT_EQ(controller->remainingLabel(), "Choose how long to keep it awake");
    EXPECT_EQ(controller->activeMode(), AwakeMode::visible);
    EXPECT_EQ(runLoop.liveTimers(), 0u);
    EXPECT_EQ(fired(), Names{});
    EXPECT_EQ(alerts.shown,
              (std::vector<fakes::FakeAlerts::Alert>{
                  {"Couldn’t start protection", "macOS rejected the power request (error -1)."}}));
}

TEST_F(AwakeControllerTest, canBeTriedAgainAfterARefusal) {
    power.refusal = 13;
    controller->start(std::nullopt);
    power.refusal = 0;
    controller->start(std::nullopt);
    EXPECT_TRUE(controller->isActive());
    EXPECT_EQ(alerts.shown.size(), 1u);
    EXPECT_EQ(alerts.shown[0].informativeText, "macOS rejected the power request (error 13).");
}

TEST_F(AwakeControllerTest, keepsASessionThatBeganWhileTheRefusalWasShown) {
    power.refusal = 5;
    alerts.onShown = [this] {
        power.refusal = 0;
        alerts.onShown = nullptr;
        controller->start(std::nullopt, AwakeMode::appleLock);
    };
    controller->start(30, AwakeMode::agentLock);
    EXPECT_TRUE(controller->isActive());
    EXPECT_EQ(controller->activeMode(), AwakeMode::appleLock);
    EXPECT_EQ(power.held.size(), 1u);
}

TEST_F(AwakeControllerTest, stoppingReleasesTheAssertionAndResetsTheLabels) {
    controller->start(30, AwakeMode::agentLock);
    fired();
    controller->stop();
    EXPECT_FALSE(controller->isActive());
    EXPECT_EQ(controller->sessionLabel(), "Mac can sleep normally");
    EXPECT_EQ(controller->remainingLabel(), "Choose how long to keep it awake");
    EXPECT_EQ(power.released.size(), 1u);
    EXPECT_EQ(runLoop.liveTimers(), 0u);
    EXPECT_EQ(fired(), (Names{"onStateChange", "onSessionEnded"}));
}

TEST_F(AwakeControllerTest, stoppingWhileIdleOnlyReports) {
    controller->stop();
    EXPECT_FALSE(controller->isActive());
    EXPECT_TRUE(power.released.empty());
    EXPECT_EQ(fired(), (Names{"onStateChange", "onSessionEnded"}));
}

TEST_F(AwakeControllerTest, keepsTheModeOfTheEndedSession) {
    controller->start(std::nullopt, AwakeMode::appleLock);
    controller->stop();
    EXPECT_EQ(controller->activeMode(), AwakeMode::appleLock);
    controller->start(std::nullopt);
    EXPECT_EQ(controller->activeMode(), AwakeMode::visible);
}

TEST_F(AwakeControllerTest, endsAtOnceForNoMinutesAndLeavesAnIdleCountdownBehind) {
    for (const std::int64_t minutes : {0, -5}) {
        controller->start(minutes, AwakeMode::visible);
        EXPECT_FALSE(controller->isActive());
        EXPECT_EQ(fired(), (Names{"onStateChange", "onSessionEnded", "onStateChange"}));
        EXPECT_EQ(runLoop.liveTimers(), 1u);
        EXPECT_TRUE(power.held.empty());
        runLoop.advance(3s);
        EXPECT_EQ(fired(), Names{});
    }
    controller->stop();
    EXPECT_EQ(runLoop.liveTimers(), 0u);
}

TEST_F(AwakeControllerTest, tearsDownSilentlyAndReleasesOnce) {
    controller->startAgentMonitoring();
    controller->start(30, AwakeMode::agentLock);
    fired();
    controller->tearDown();
    EXPECT_FALSE(controller->isActive());
    EXPECT_EQ(power.released.size(), 1u);
    EXPECT_EQ(runLoop.liveTimers(), 0u);
    EXPECT_EQ(fired(), Names{});
    EXPECT_EQ(controller->remainingLabel(), "29m remaining");
    controller->tearDown();
    EXPECT_EQ(power.released.size(), 1u);
}

TEST_F(AwakeControllerTest, tearingDownWhileIdleReleasesNothing) {
    controller->tearDown();
    EXPECT_TRUE(power.released.empty());
    EXPECT_EQ(fired(), Names{});
}

TEST_F(AwakeControllerTest, isNotKeptAliveByItsTimers) {
    controller->startAgentMonitoring();
    controller->start(30);
    const std::weak_ptr<AwakeController> weak = controller;
    controller.reset();
    EXPECT_TRUE(weak.expired());
    // Only tearDown() gives things back; ticks that come later find nobody and do nothing.
    EXPECT_EQ(power.held.size(), 1u);
    EXPECT_GE(runLoop.liveTimers(), 1u);
    runLoop.advance(1h);
    runLoop.runBackgroundWork();
    EXPECT_TRUE(power.released.empty());
}

TEST_F(AwakeControllerTest, tellsObserversBeforeEachPublishedChange) {
    std::vector<bool> seen;
    const auto observation =
        controller->objectWillChange([&] { seen.push_back(controller->isActive()); });
    controller->start(std::nullopt);
    ASSERT_FALSE(seen.empty());
    EXPECT_FALSE(seen.front());
    EXPECT_TRUE(controller->isActive());
}

TEST_F(AwakeControllerTest, publishesAgentsOnlyWhenTheyDiffer) {
    agents = {{.pid = 1, .name = "Codex", .project = "webapp", .runtime = "5m"}};
    controller->startAgentMonitoring();
    runLoop.runBackgroundWork();
    EXPECT_EQ(controller->agentSessions(), agents);
    EXPECT_EQ(fired(), (Names{"onStatusRefresh"}));
    runLoop.advance(3s);
    runLoop.runBackgroundWork();
    EXPECT_EQ(fired(), Names{});
    agents.clear();
    runLoop.advance(3s);
    runLoop.runBackgroundWork();
    EXPECT_TRUE(controller->agentSessions().empty());
    EXPECT_EQ(fired(), (Names{"onStatusRefresh"}));
}

TEST_F(AwakeControllerTest, assignsAgentsAlsoWithNobodyToTell) {
    controller->onStatusRefresh = nullptr;
    agents = {{.pid = 1, .name = "Codex", .project = "webapp", .runtime = "5m"}};
    controller->startAgentMonitoring();
    runLoop.runBackgroundWork();
    EXPECT_EQ(controller->agentSessions(), agents);
}

TEST_F(AwakeControllerTest, scansNoMoreAfterTearDownButTakesTheScanUnderWay) {
    agents = {{.pid = 1, .name = "Codex", .project = "webapp", .runtime = "5m"}};
    controller->startAgentMonitoring();
    controller->tearDown();
    runLoop.runBackgroundWork();
    EXPECT_EQ(controller->agentSessions(), agents);
    runLoop.advance(10s);
    EXPECT_EQ(runLoop.backgroundWorkWaiting(), 0u);
}

using AwakeControllerDeathTest = AwakeControllerTest;

TEST_F(AwakeControllerDeathTest, stopsTheProcessWhenTheLengthOverflows) {
    constexpr auto most = std::numeric_limits<std::int64_t>::max();
    EXPECT_DEATH(controller->start(most), "internal error");
    EXPECT_DEATH(controller->start(most / 60), "internal error");
}

} // namespace
} // namespace vigilo
