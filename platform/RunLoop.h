#pragma once

#include <chrono>
#include <functional>
#include <memory>

namespace vigilo::platform {

/// A repeating timer of the main thread. The run loop keeps it going until it is invalidated;
/// letting go of the handle does not stop it. Main thread only.
class Timer {
public:
    virtual ~Timer() = default;

    /// Stops the timer for good; its action is not called again. Repeating the call does nothing.
    virtual void invalidate() = 0;
};

/// The program's one event loop: where main-thread work is queued and where background work starts.
class RunLoop {
public:
    using Task = std::function<void()>;

    virtual ~RunLoop() = default;

    /// Calls `action` on the main thread every `interval` (> 0), first after one interval. Ticks
    /// that the loop was too busy for are not made up. Main thread.
    virtual std::shared_ptr<Timer> scheduleRepeating(std::chrono::milliseconds interval,
                                                     Task action) = 0;

    /// Calls `task` once on the main thread, `delay` from now. Main thread.
    virtual void runAfter(std::chrono::milliseconds delay, Task task) = 0;

    /// Queues `task` for a later turn of the main thread; tasks run in the order posted. Any
    /// thread.
    virtual void post(Task task) = 0;

    /// Queues `task` for the one low-priority background worker; tasks run one after another. Work
    /// not yet begun when the program ends is dropped. Main thread.
    virtual void runInBackground(Task task) = 0;
};

} // namespace vigilo::platform
