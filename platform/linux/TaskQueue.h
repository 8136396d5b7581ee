#pragma once

#include "platform/linux/FileDescriptor.h"

#include <deque>
#include <functional>
#include <mutex>

namespace vigilo::platform {

/// Tasks handed from any thread to the one that watches `descriptor()`.
class TaskQueue {
public:
    using Task = std::function<void()>;

    /// A process that has no descriptor left for it stops with a message.
    TaskQueue();

    /// Readable (poll(2)) for as long as a task waits.
    int descriptor() const { return waiting_.number(); }

    /// Any thread.
    void push(Task task);

    /// Runs the oldest task, if there is one. One a call, so that a task which runs an event loop
    /// of its own does not hold up those behind it.
    void runNext();

    /// Drops the tasks that wait, and with them what they own.
    void clear();

private:
    FileDescriptor waiting_; ///< a semaphore that counts the tasks
    std::mutex mutex_;
    std::deque<Task> tasks_;
};

} // namespace vigilo::platform
