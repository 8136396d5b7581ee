#include "platform/linux/processes/RecentCpuUse.h"

#include <gtest/gtest.h>

#include <cmath>

namespace vigilo::platform {
namespace {

using namespace std::chrono_literals;
using std::chrono::nanoseconds;

/// A process that is looked at as its time goes by.
class RecentCpuUseTest : public testing::Test {
protected:
    /// Lets it use `share` of a core for some time and takes a reading.
    double after(nanoseconds passed, double share) {
        reading.now += passed;
        reading.age += passed;
        reading.cpuTime +=
            nanoseconds(static_cast<std::int64_t>(static_cast<double>(passed.count()) * share));
        return use.percent(reading);
    }

    RecentCpuUse use;
    CpuReading reading{.pid = 7, .startTime = 100, .age = 0ns, .cpuTime = 0ns, .now = 1h};
};

TEST_F(RecentCpuUseTest, reportsAYoungProcessAtOnceByItsWholeLife) {
    EXPECT_EQ(after(10s, 0.5), 50.0);
}

TEST_F(RecentCpuUseTest, reportsAnOldProcessOnlyAtTheSecondReading) {
    reading.age = 2h;
    reading.cpuTime = 1h;
    EXPECT_EQ(after(0s, 0), 0.0);
    EXPECT_EQ(after(3s, 0.25), 25.0);
}

TEST_F(RecentCpuUseTest, keepsAnEvenUseEven) {
    after(5s, 0.3);
    for (int scan = 0; scan < 100; ++scan) {
        EXPECT_EQ(after(3s, 0.3), 30.0);
    }
}

TEST_F(RecentCpuUseTest, fadesWithATimeConstantOfTwentySeconds) {
    reading.age = 2h;
    after(0s, 0);
    for (int scan = 0; scan < 200; ++scan) {
        after(3s, 1);
    }
    after(20s, 0);
    // Long observed, so the correction for the short observation is gone.
    EXPECT_NEAR(after(0s, 0), 100 * std::exp(-1.0), 0.1);
}

TEST_F(RecentCpuUseTest, forgetsABusyPastWithinTwoMinutes) {
    after(50s, 1);
    double percent = 100;
    for (int scan = 0; scan < 40; ++scan) {
        percent = after(3s, 0);
    }
    EXPECT_LT(percent, 1.0);
}

TEST_F(RecentCpuUseTest, beginsAnewAfterAGapOrWhenTimeRunsBackwards) {
    reading.age = 2h;
    after(0s, 0);
    EXPECT_EQ(after(31s, 1), 0.0);
    EXPECT_EQ(after(3s, 0.5), 50.0);
    reading.cpuTime -= 1s;
    EXPECT_EQ(after(3s, 0), 0.0);
    reading.now -= 10s;
    EXPECT_EQ(use.percent(reading), 0.0);
}

TEST_F(RecentCpuUseTest, tellsProcessesOfOnePidApart) {
    after(50s, 1);
    reading.startTime = 200;
    reading.age = 10s;
    reading.cpuTime = 1s;
    EXPECT_EQ(use.percent(reading), 10.0);
}

TEST_F(RecentCpuUseTest, forgetsWhatWasNotSeen) {
    reading.age = 2h;
    after(0s, 0);
    use.forgetUnseen();
    EXPECT_EQ(after(3s, 0.5), 50.0);
    use.forgetUnseen();
    use.forgetUnseen();
    EXPECT_EQ(after(3s, 0.5), 0.0);
}

TEST_F(RecentCpuUseTest, roundsToOneDecimal) {
    EXPECT_EQ(after(10s, 0.00949), 0.9);
    EXPECT_EQ(RecentCpuUse().percent(
                  {.pid = 1, .startTime = 1, .age = 10s, .cpuTime = 99600us, .now = 1h}),
              1.0);
}

} // namespace
} // namespace vigilo::platform
