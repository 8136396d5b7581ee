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
    const std::lock_guard lock(mutex_);
    tasks_.push_back(std::move(task));
    eventfd_write(waiting_.number(), 1);
}

void TaskQueue::runNext() {
    Task task;
    {
        const std::lock_guard lock(mutex_);
        eventfd_t one = 0;
        if (eventfd_read(waiting_.number(), &one) != 0) {
            return;
        }
        task = std::move(tasks_.front());
        tasks_.pop_front();
    }
    task();
}

} // namespace vigilo::platform
