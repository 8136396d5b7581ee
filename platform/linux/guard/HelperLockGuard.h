#pragma once

#include "platform/LockGuard.h"
#include "platform/linux/HelperProgram.h"

#include <memory>

#include <QElapsedTimer>
#include <QSocketNotifier>
#include <QTimer>

namespace vigilo::platform {

/// A helper process that notices the program's death by the end of their connection. One that is
/// killed is replaced, and one that cannot be started is tried again each second.
class HelperLockGuard : public LockGuard {
public:
    HelperLockGuard();
    ~HelperLockGuard() override;

    void raise() override;
    void lower() override;

private:
    void start();
    void replace();
    void end();

    bool isRaised_ = false;
    StartedHelper guard_;
    std::unique_ptr<QSocketNotifier> death_;
    QElapsedTimer sinceStart_;
    QTimer retry_;
};

} // namespace vigilo::platform
