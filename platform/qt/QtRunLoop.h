#pragma once

#include "platform/RunLoop.h"
#include "platform/linux/BackgroundWorker.h"

#include <QObject>

namespace vigilo::platform {

/// The Qt event loop of the main thread as the program's run loop. Needs an application object for
/// as long as it lives.
class QtRunLoop : public RunLoop {
public:
    std::shared_ptr<Timer> scheduleRepeating(std::chrono::milliseconds interval,
                                             Task action) override;
    void runAfter(std::chrono::milliseconds delay, Task task) override;
    void post(Task task) override;
    void runInBackground(Task task) override;

    /// Ends the background worker, as BackgroundWorker::finish() does.
    bool finishBackgroundWork(std::chrono::milliseconds limit);

private:
    QObject context_; ///< tasks not yet run go with it
    BackgroundWorker worker_;
};

} // namespace vigilo::platform
