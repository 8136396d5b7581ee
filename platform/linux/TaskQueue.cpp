#include "platform/linux/TaskQueue.h"

#include "platform/Fatal.h"

#include <utility>

#include <sys/eventfd.h>

namespace vigilo::platform {

TaskQueue::TaskQueue() : waiting_(eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK | EFD_SEMAPHORE)) {
    if (!waiting_) {
        fatal("no descriptor for tasks of other threads");
    }
}

void TaskQueue::push(Task task) {
    {
        const std::lock_guard lock(mutex_);
        tasks_.push_back(std::move(task));
    }
    // Without the lock, which the other thread would only wake to wait for.
    eventfd_write(waiting_.number(), 1);
}

void TaskQueue::runNext() {
    Task task;
    {
        const std::lock_guard lock(mutex_);
        eventfd_t one = 0;
        // Its task may have been dropped before it was told of.
        if (eventfd_read(waiting_.number(), &one) != 0 || tasks_.empty()) {
            return;
        }
        task = std::move(tasks_.front());
        tasks_.pop_front();
    }
    task();
}

void TaskQueue::clear() {
    std::deque<Task> dropped; // destroyed without the lock, since a task may own anything
    const std::lock_guard lock(mutex_);
    dropped.swap(tasks_);
    for (std::size_t count = dropped.size(); count > 0; --count) {
        eventfd_t one = 0;
        eventfd_read(waiting_.number(), &one);
    }
}

} // namespace vigilo::platform
