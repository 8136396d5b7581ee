#include "tests/unit/core/ControllerFixture.h"

#include <utility>

namespace vigilo {
namespace {

class AwakeControllerCountdown : public ControllerFixture {
protected:
    /// Starts a session of a day and moves the clock so that this much of it is left.
    std::string labelWithRemaining(std::chrono::milliseconds remaining) {
        clock.timePerRead = 0us;
        controller->start(24 * 60);
        // The tick comes one second later, which the clock must not count twice.
        clock.advance(24h - remaining - 1s);
        runLoop.advance(1s);
        return controller->remainingLabel();
    }
};

TEST_F(AwakeControllerCountdown, writesTheRemainingTimeInHoursAndMinutesRoundedDown) {
    const std::vector<std::pair<std::chrono::milliseconds, std::string>> cases{
        {7200s, "2h 0m remaining"}, {7199s, "1h 59m remaining"}, {3661s, "1h 1m remaining"},
        {3600s, "1h 0m remaining"}, {3599s, "59m remaining"},    {3599999ms, "59m remaining"},
        {120s, "2m remaining"},     {119s, "1m remaining"},      {60s, "1m remaining"},
        {59s, "1m remaining"},      {1s, "1m remaining"},        {1999ms, "1m remaining"}};
    for (const auto& [remaining, label] : cases) {
        EXPECT_EQ(labelWithRemaining(remaining), label) << remaining.count() << " ms";
    }
}

TEST_F(AwakeControllerCountdown, showsOneMinuteLessThanTheLengthAtOnce) {
    const std::vector<std::pair<std::int64_t, std::string>> cases{{30, "29m remaining"},
                                                                  {60, "59m remaining"},
                                                                  {120, "1h 59m remaining"},
                                                                  {480, "7h 59m remaining"}};
    for (const auto& [minutes, label] : cases) {
        controller->start(minutes);
        EXPECT_EQ(controller->remainingLabel(), label);
    }
}

TEST_F(AwakeControllerCountdown, ticksOnceASecond) {
    controller->start(30);
    fired();
    runLoop.advance(5s);
    EXPECT_EQ(fired(), Names(5, "onStatusRefresh"));
}

TEST_F(AwakeControllerCountdown, endsWhenLessThanASecondIsLeft) {
    controller->start(1);
    runLoop.advance(58s);
    EXPECT_TRUE(controller->isActive());
    clock.advance(500ms);
    runLoop.advance(1s);
    EXPECT_FALSE(controller->isActive());
}

TEST_F(AwakeControllerCountdown, expiresAtTheWallClockAfterAGapInTheTicks) {
    controller->start(30);
    clock.advance(31min); // the machine slept
    EXPECT_TRUE(controller->isActive());
    runLoop.advance(1s);
    EXPECT_FALSE(controller->isActive());
    EXPECT_TRUE(power.held.empty());
}

TEST_F(AwakeControllerCountdown, showsTheTrueRemainingTimeAfterAGapInTheTicks) {
    controller->start(120);
    clock.advance(1h);
    runLoop.advance(1s);
    EXPECT_EQ(controller->remainingLabel(), "59m remaining");
}

TEST_F(AwakeControllerCountdown, followsAClockThatIsSetBack) {
    controller->start(30);
    clock.advance(-1h);
    runLoop.advance(1s);
    EXPECT_EQ(controller->remainingLabel(), "1h 29m remaining");
    EXPECT_TRUE(controller->isActive());
    clock.advance(1h);
    runLoop.advance(30min);
    EXPECT_FALSE(controller->isActive());
}

TEST_F(AwakeControllerCountdown, firesNoMoreTicksAfterTheEnd) {
    controller->start(1);
    runLoop.advance(61s);
    fired();
    runLoop.advance(1min);
    EXPECT_EQ(fired(), Names{});
    EXPECT_EQ(power.released.size(), 1u);
}

} // namespace
} // namespace vigilo
