#include "agents/AgentMonitor.h"
#include "tests/fakes/FakeRunLoop.h"
#include "tests/fakes/FakeWallClock.h"

#include <gtest/gtest.h>

#include <memory>

namespace vigilo {
namespace {

using namespace std::chrono_literals;

class AgentMonitorTest : public testing::Test {
protected:
    fakes::FakeWallClock clock;
    fakes::FakeRunLoop runLoop{clock};
    int scans = 0;
    int results = 0;
    std::shared_ptr<AgentMonitor> monitor = std::make_shared<AgentMonitor>(
        runLoop,
        [this] {
            ++scans;
            return std::vector<AgentSession>{};
        },
        [this](const std::vector<AgentSession>&) { ++results; });
};

TEST_F(AgentMonitorTest, scansAtOnceInTheBackground) {
    monitor->start();
    EXPECT_EQ(runLoop.backgroundWorkWaiting(), 1u);
    EXPECT_EQ(scans, 0);
    runLoop.runBackgroundWork();
    EXPECT_EQ(scans, 1);
    EXPECT_EQ(results, 1);
}

TEST_F(AgentMonitorTest, scansEveryThreeSeconds) {
    monitor->start();
    runLoop.runBackgroundWork();
    runLoop.advance(2990ms);
    EXPECT_EQ(runLoop.backgroundWorkWaiting(), 0u);
    runLoop.advance(10ms);
    EXPECT_EQ(runLoop.backgroundWorkWaiting(), 1u);
}

TEST_F(AgentMonitorTest, dropsTicksDuringASlowScan) {
    monitor->start();
    runLoop.advance(10s);
    EXPECT_EQ(runLoop.backgroundWorkWaiting(), 1u);
    runLoop.runBackgroundWork();
    EXPECT_EQ(scans, 1);
    EXPECT_EQ(runLoop.backgroundWorkWaiting(), 0u);
    runLoop.advance(2s);
    EXPECT_EQ(runLoop.backgroundWorkWaiting(), 1u);
}

TEST_F(AgentMonitorTest, replacesItsTimerWhenStartedAnew) {
    monitor->start();
    runLoop.runBackgroundWork();
    monitor->start();
    EXPECT_EQ(runLoop.liveTimers(), 1u);
    EXPECT_EQ(runLoop.backgroundWorkWaiting(), 1u);
}

TEST_F(AgentMonitorTest, ticksNoMoreOnceStopped) {
    monitor->start();
    runLoop.runBackgroundWork();
    monitor->stop();
    EXPECT_EQ(runLoop.liveTimers(), 0u);
    runLoop.advance(10s);
    EXPECT_EQ(runLoop.backgroundWorkWaiting(), 0u);
}

TEST_F(AgentMonitorTest, finishesAScanThatOutlivesItWithoutAResult) {
    monitor->start();
    monitor.reset();
    runLoop.runBackgroundWork();
    EXPECT_EQ(scans, 1);
    EXPECT_EQ(results, 0);
}

} // namespace
} // namespace vigilo
