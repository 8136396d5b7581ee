#include "platform/qt/QtRunLoop.h"

#include <utility>

#include <QPointer>
#include <QTimer>

namespace vigilo::platform {

namespace {

class RepeatingTimer : public Timer {
public:
    explicit RepeatingTimer(QTimer* timer) : timer_(timer) {}

    void invalidate() override {
        if (timer_) {
            // Deleted later, since an action may invalidate its own timer.
            timer_->stop();
            timer_->deleteLater();
            timer_.clear();
        }
    }

private:
    QPointer<QTimer> timer_;
};

} // namespace

QtRunLoop::QtRunLoop() {
    QObject::connect(&postedNotifier_, &QSocketNotifier::activated, &context_,
                     [this] { posted_.runNext(); });
}

std::shared_ptr<Timer> QtRunLoop::scheduleRepeating(std::chrono::milliseconds interval,
                                                    Task action) {
    auto* timer = new QTimer(&context_);
    timer->setTimerType(Qt::PreciseTimer);
    QObject::connect(timer, &QTimer::timeout, timer, std::move(action));
    timer->start(interval);
    return std::make_shared<RepeatingTimer>(timer);
}

void QtRunLoop::runAfter(std::chrono::milliseconds delay, Task task) {
    QTimer::singleShot(delay, Qt::PreciseTimer, &context_, std::move(task));
}

void QtRunLoop::post(Task task) {
    posted_.push(std::move(task));
}

void QtRunLoop::runInBackground(Task task) {
    worker_.run(std::move(task));
}

void QtRunLoop::discardPosted() {
    posted_.clear();
}

bool QtRunLoop::finishBackgroundWork(std::chrono::milliseconds limit) {
    return worker_.finish(limit);
}

} // namespace vigilo::platform
