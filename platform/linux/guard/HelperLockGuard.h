#pragma once

#include "platform/LockGuard.h"
#include "platform/linux/HelperProgram.h"

#include <memory>

#include <QSocketNotifier>

namespace vigilo::platform {

/// A helper process that notices the program's death by the end of their connection; one that is
/// killed is replaced.
class HelperLockGuard : public LockGuard {
public:
    HelperLockGuard() = default;
    ~HelperLockGuard() override;

    void raise() override;
    void lower() override;

private:
    void start();
    void reap();

    StartedHelper guard_;
    std::unique_ptr<QSocketNotifier> death_;
};

} // namespace vigilo::platform
