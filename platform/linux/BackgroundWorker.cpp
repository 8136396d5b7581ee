#include "platform/linux/BackgroundWorker.h"

#include <condition_variable>
#include <deque>
#include <mutex>
#include <thread>
#include <utility>

#include <sys/resource.h>
#include <unistd.h>

namespace vigilo::platform {

namespace {
constexpr int workerNice = 10;
}

struct BackgroundWorker::State {
    std::mutex mutex;
    std::condition_variable changed;
    std::deque<Task> waiting;
    bool isBusy = false;
    bool isEnding = false;
};

BackgroundWorker::BackgroundWorker() : state_(std::make_shared<State>()) {
    std::thread([state = state_] { work(state); }).detach();
}

BackgroundWorker::~BackgroundWorker() {
    finish(std::chrono::milliseconds{0});
}

void BackgroundWorker::run(Task task) {
    const std::lock_guard lock(state_->mutex);
    if (!state_->isEnding) {
        state_->waiting.push_back(std::move(task));
        state_->changed.notify_all();
    }
}

bool BackgroundWorker::finish(std::chrono::milliseconds limit) {
    std::deque<Task> dropped; // destroyed without the lock, since a task may own anything
    std::unique_lock lock(state_->mutex);
    state_->isEnding = true;
    dropped.swap(state_->waiting);
    state_->changed.notify_all();
    return state_->changed.wait_for(lock, limit, [this] { return !state_->isBusy; });
}

void BackgroundWorker::work(const std::shared_ptr<State>& state) {
    // Linux keeps a nice value for each thread, whatever POSIX says of the process.
    setpriority(PRIO_PROCESS, static_cast<id_t>(gettid()), workerNice);
    std::unique_lock lock(state->mutex);
    while (true) {
        state->changed.wait(lock, [&] { return state->isEnding || !state->waiting.empty(); });
        if (state->isEnding) {
            return;
        }
        {
            const Task task = std::move(state->waiting.front());
            state->waiting.pop_front();
            state->isBusy = true;
            lock.unlock();
            task();
        }
        lock.lock();
        state->isBusy = false;
        state->changed.notify_all();
    }
}

} // namespace vigilo::platform
