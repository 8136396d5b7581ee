#pragma once

#include "helpers/authenticate/Frames.h"
#include "platform/linux/FileDescriptor.h"

#include <functional>
#include <memory>
#include <string_view>

#include <QSocketNotifier>
#include <QTimer>

#include <sys/types.h>

namespace vigilo::platform {

/// What came out of an attempt.
enum class Verdict {
    owner,   ///< it is the owner
    refused, ///< it is not, or the answers were wrong
    failed, ///< nobody knows: the helper crashed, was killed, spoke nonsense or met a broken system
};

/// What the owner shows for a proof.
enum class Proof {
    password,    ///< what the system asks everybody
    fingerprint, ///< a finger on the reader; never a question
};

/// One attempt: a helper of its own that talks to PAM. Destroying it ends the helper. Main thread.
class AuthenticationProcess {
public:
    /// What the helper says; called from the event loop. `onEnd` is the last call: `owner` only
    /// after an explicit success and exit status 0, never after a crash, a signal or bytes that are
    /// no frames.
    struct Events {
        std::function<void(const authentication::Frame&)> onMessage;
        std::function<void(Verdict)> onEnd;
    };

    explicit AuthenticationProcess(Events events, Proof proof = Proof::password);
    ~AuthenticationProcess();
    AuthenticationProcess(const AuthenticationProcess&) = delete;
    AuthenticationProcess& operator=(const AuthenticationProcess&) = delete;

    /// Answers the helper's question; `secret` is not kept.
    void answer(std::string_view secret);

private:
    bool readSome();
    void readAll();
    void takeFrames();
    void exited();
    void end(Verdict verdict);

    Events events_;
    FileDescriptor socket_;
    pid_t helper_ = -1;
    authentication::FrameReader reader_;
    bool saysSuccess_ = false;
    std::unique_ptr<QSocketNotifier> talk_; ///< there is something to read
    FileDescriptor process_;
    std::unique_ptr<QSocketNotifier> exit_; ///< the helper has ended
    QTimer silence_;                        ///< it has no more to say and should end
};

} // namespace vigilo::platform
