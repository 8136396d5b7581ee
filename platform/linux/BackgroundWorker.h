#pragma once

#include <chrono>
#include <functional>
#include <memory>

namespace vigilo::platform {

/// One thread of low priority (nice 10) that runs tasks one after another.
class BackgroundWorker {
public:
    using Task = std::function<void()>;

    BackgroundWorker();

    /// Drops what waits and leaves a task under way to itself: a task stuck in the kernel must not
    /// keep the program from ending. What a task uses therefore has to be owned or shared by it.
    ~BackgroundWorker();

    BackgroundWorker(const BackgroundWorker&) = delete;
    BackgroundWorker& operator=(const BackgroundWorker&) = delete;

    /// Queues a task. Any thread.
    void run(Task task);

    /// Takes no more tasks and drops those waiting; waits until the one under way is done, `limit`
    /// at most. Returns whether the worker is idle.
    bool finish(std::chrono::milliseconds limit);

private:
    struct State;
    static void work(const std::shared_ptr<State>& state);

    std::shared_ptr<State> state_;
};

} // namespace vigilo::platform
