#pragma once

#include "helpers/authenticate/Frames.h"
#include "platform/linux/FileDescriptor.h"

#include <functional>
#include <memory>
#include <string_view>

#include <QSocketNotifier>

#include <sys/types.h>

namespace vigilo::platform {

/// One attempt: a helper of its own that talks to PAM. Destroying it ends the helper. Main thread.
class AuthenticationProcess {
public:
    /// What the helper says; called from the event loop. `onEnd` is the last call: true only after
    /// an explicit success and exit status 0, never after a crash, a signal or bytes that are no
    /// frames.
    struct Events {
        std::function<void(const authentication::Frame&)> onMessage;
        std::function<void(bool isOwner)> onEnd;
    };

    explicit AuthenticationProcess(Events events);
    ~AuthenticationProcess();
    AuthenticationProcess(const AuthenticationProcess&) = delete;
    AuthenticationProcess& operator=(const AuthenticationProcess&) = delete;

    /// Answers the helper's question; `secret` is not kept.
    void answer(std::string_view secret);

private:
    void read();
    void end(bool isOwner);
    bool hasExitedWell();

    Events events_;
    FileDescriptor socket_;
    pid_t helper_ = -1;
    authentication::FrameReader reader_;
    bool saysSuccess_ = false;
    std::unique_ptr<QSocketNotifier> notifier_;
};

} // namespace vigilo::platform
