#include "core/Observable.h"

#include <gtest/gtest.h>

#include <memory>
#include <optional>
#include <string>

namespace vigilo {
namespace {

class Counter : public Observable {
public:
    int value() const { return value_(); }
    void set(int value) { value_ = value; }

private:
    Published<int> value_{*this, 1};
};

TEST(Observable, announcesAChangeBeforeItIsStored) {
    Counter counter;
    int seen = 0;
    const auto observation = counter.objectWillChange([&] { seen = counter.value(); });
    counter.set(2);
    EXPECT_EQ(seen, 1);
    EXPECT_EQ(counter.value(), 2);
}

TEST(Observable, announcesEveryWriteEvenOfAnEqualValue) {
    Counter counter;
    int announcements = 0;
    const auto observation = counter.objectWillChange([&] { ++announcements; });
    counter.set(1);
    counter.set(1);
    EXPECT_EQ(announcements, 2);
}

TEST(Observable, tellsEveryObserverUntilItsObservationEnds) {
    Counter counter;
    std::string log;
    const auto first = counter.objectWillChange([&] { log += "a"; });
    std::optional second = counter.objectWillChange([&] { log += "b"; });
    counter.set(2);
    second.reset();
    counter.set(3);
    EXPECT_EQ(log, "aba");
}

TEST(Observable, letsAnObserverCancelAnotherWhileItIsTold) {
    Counter counter;
    std::optional<Observable::Observation> second;
    int secondTold = 0;
    const auto first = counter.objectWillChange([&] { second.reset(); });
    second = counter.objectWillChange([&] { ++secondTold; });
    counter.set(2);
    EXPECT_EQ(secondTold, 0);
}

TEST(Observable, letsAnObserverCancelItselfAndKeepsWhatItHoldsUntilItReturns) {
    Counter counter;
    std::optional<Observable::Observation> observation;
    auto held = std::make_shared<int>();
    const std::weak_ptr<int> watched = held;
    bool isHeld = false;
    observation = counter.objectWillChange([&, held = std::move(held)] {
        // What the closure refers to has to be looked up before it may be gone.
        const std::weak_ptr<int>& kept = watched;
        bool& result = isHeld;
        observation.reset();
        result = !kept.expired();
    });
    counter.set(2);
    EXPECT_TRUE(isHeld);
    EXPECT_TRUE(watched.expired());
}

TEST(Observable, mayEndBeforeItsObservations) {
    auto counter = std::make_unique<Counter>();
    const auto observation = counter->objectWillChange([] {});
    counter.reset();
}

TEST(Observable, movesAnObservationWithoutLosingOrDoublingIt) {
    Counter counter;
    int announcements = 0;
    auto first = counter.objectWillChange([&] { ++announcements; });
    Observable::Observation second;
    second = std::move(first);
    counter.set(2);
    EXPECT_EQ(announcements, 1);
}

} // namespace
} // namespace vigilo
