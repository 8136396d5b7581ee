#pragma once

#include "platform/RunLoop.h"
#include "tests/fakes/FakeWallClock.h"

#include <algorithm>
#include <chrono>
#include <cstddef>
#include <deque>
#include <memory>
#include <utility>
#include <vector>

namespace vigilo::fakes {

/// A run loop whose time moves only when a test says so. Background work waits until
/// `runBackgroundWork()`, so a test decides how long a scan takes.
class FakeRunLoop : public platform::RunLoop {
public:
    explicit FakeRunLoop(FakeWallClock& clock) : clock_(clock) {}

    std::shared_ptr<platform::Timer> scheduleRepeating(std::chrono::milliseconds interval,
                                                       Task action) override {
        auto timer = std::make_shared<FakeTimer>();
        timer->interval = interval;
        timer->due = elapsed_ + interval;
        timer->action = std::move(action);
        timers_.push_back(timer);
        return timer;
    }

    void runAfter(std::chrono::milliseconds delay, Task task) override {
        delayed_.push_back({elapsed_ + delay, std::move(task)});
    }

    void post(Task task) override { posted_.push_back(std::move(task)); }

    void runInBackground(Task task) override { background_.push_back(std::move(task)); }

    /// Moves time on, the wall clock with it, and runs what falls due at its time.
    void advance(std::chrono::milliseconds duration) {
        runPosted();
        const std::chrono::milliseconds end = elapsed_ + duration;
        // A task may itself advance time, past the end too.
        while (elapsed_ < end) {
            const std::chrono::milliseconds next = std::clamp(nextDue(), elapsed_, end);
            clock_.advance(next - elapsed_);
            elapsed_ = next;
            runDue();
        }
    }

    /// Runs everything posted, also what is posted meanwhile.
    void runPosted() {
        while (!posted_.empty()) {
            const Task task = std::move(posted_.front());
            posted_.pop_front();
            task();
        }
    }

    /// Runs the background work that waits now, on this thread, and then what it posted.
    void runBackgroundWork() {
        auto work = std::exchange(background_, {});
        for (const Task& task : work) {
            task();
        }
        runPosted();
    }

    std::size_t backgroundWorkWaiting() const { return background_.size(); }

    std::size_t delayedTasks() const { return delayed_.size(); }

    /// Timers that have been scheduled and not invalidated.
    std::size_t liveTimers() const {
        return static_cast<std::size_t>(std::count_if(
            timers_.begin(), timers_.end(), [](const auto& timer) { return timer->isValid; }));
    }

private:
    struct FakeTimer : platform::Timer {
        void invalidate() override { isValid = false; }

        std::chrono::milliseconds interval{};
        std::chrono::milliseconds due{};
        Task action;
        bool isValid = true;
    };

    struct Delayed {
        std::chrono::milliseconds due;
        Task task;
    };

    /// When the next timer or delayed task falls due; never, where there is none.
    std::chrono::milliseconds nextDue() const {
        auto next = std::chrono::milliseconds::max();
        for (const auto& timer : timers_) {
            if (timer->isValid) {
                next = std::min(next, timer->due);
            }
        }
        for (const Delayed& delayed : delayed_) {
            next = std::min(next, delayed.due);
        }
        return next;
    }

    void runDue() {
        const auto timers = timers_; // an action may schedule or invalidate timers
        for (const auto& timer : timers) {
            if (timer->isValid && timer->due <= elapsed_) {
                timer->due += timer->interval;
                timer->action();
            }
        }
        std::erase_if(timers_, [](const auto& timer) { return !timer->isValid; });
        std::vector<Task> due;
        std::erase_if(delayed_, [&](Delayed& delayed) {
            if (delayed.due > elapsed_) {
                return false;
            }
            due.push_back(std::move(delayed.task));
            return true;
        });
        for (const Task& task : due) {
            task();
        }
        runPosted();
    }

    FakeWallClock& clock_;
    std::chrono::milliseconds elapsed_{0};
    std::vector<std::shared_ptr<FakeTimer>> timers_;
    std::vector<Delayed> delayed_;
    std::deque<Task> posted_;
    std::vector<Task> background_;
};

} // namespace vigilo::fakes
