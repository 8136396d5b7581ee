#pragma once

#include "platform/RunLoop.h"
#include "platform/linux/BackgroundWorker.h"
#include "platform/linux/TaskQueue.h"

#include <QObject>
#include <QSocketNotifier>

namespace vigilo::platform {

/// The Qt event loop of the main thread as the program's run loop. Needs an application object for
/// as long as it lives.
class QtRunLoop : public RunLoop {
public:
    QtRunLoop();

    std::shared_ptr<Timer> scheduleRepeating(std::chrono::milliseconds interval,
                                             Task action) override;
    void runAfter(std::chrono::milliseconds delay, Task task) override;
    void post(Task task) override;
    void runInBackground(Task task) override;

    /// Drops the posted tasks that have not run, while what they own can still be destroyed.
    void discardPosted();

    /// Ends the background worker, as BackgroundWorker::finish() does.
    bool finishBackgroundWork(std::chrono::milliseconds limit);

private:
    QObject context_; ///< timers and delayed tasks go with it
    // Not the toolkit's own queue: the thread sanitizer cannot see into that and would take every
    // hand-over for a data race.
    TaskQueue posted_;
    QSocketNotifier postedNotifier_{posted_.descriptor(), QSocketNotifier::Read};
    BackgroundWorker worker_;
};

} // namespace vigilo::platform
