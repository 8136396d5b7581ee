#include "platform/linux/authentication/AuthenticationProcess.h"

#include "platform/linux/HelperProgram.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <chrono>
#include <csignal>
#include <utility>

#include <sys/socket.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

namespace vigilo::platform {

using authentication::FrameKind;
using authentication::refusedStatus;
using namespace std::chrono_literals;

namespace {

// From the end of the connection, or of what there is to say, to the end of the process.
constexpr auto longestSilence = 5s;
// More than a connection holds back at any time.
constexpr int mostPieces = 256;

} // namespace

AuthenticationProcess::AuthenticationProcess(Events events, Proof proof)
    : events_(std::move(events)) {
    StartedHelper helper = startHelper(
        "vigilo-authenticate",
        proof == Proof::fingerprint ? std::string(authentication::fingerprintArgument) : "");
    socket_ = std::move(helper.socket);
    helper_ = helper.pid;
    silence_.setSingleShot(true);
    QObject::connect(&silence_, &QTimer::timeout, &silence_, [this] { end(Verdict::failed); });
    if (helper_ > 0) {
        // Its end is not taken from the connection, which a process that a module has started may
        // keep open, nor waited for, since a module may hang at the end, too.
        // The C library's own function cannot be linked from C++ in some of its releases.
        process_ = FileDescriptor(static_cast<int>(syscall(SYS_pidfd_open, helper_, 0)));
    }
    if (!process_) {
        // No helper, or no descriptor left to watch it with: that comes from the event loop like
        // any end.
        silence_.start(0ms);
        return;
    }
    talk_ = std::make_unique<QSocketNotifier>(socket_.number(), QSocketNotifier::Read);
    QObject::connect(talk_.get(), &QSocketNotifier::activated, talk_.get(), [this] { readAll(); });
    exit_ = std::make_unique<QSocketNotifier>(process_.number(), QSocketNotifier::Read);
    QObject::connect(exit_.get(), &QSocketNotifier::activated, exit_.get(), [this] { exited(); });
}

AuthenticationProcess::~AuthenticationProcess() {
    if (helper_ > 0) {
        kill(helper_, SIGKILL);
        waitpid(helper_, nullptr, 0);
    }
}

void AuthenticationProcess::answer(std::string_view secret) {
    // In pieces, so that no copy of it is made.
    const std::size_t size = std::min(secret.size(), authentication::longestAnswer);
    const std::array header{static_cast<char>(FrameKind::answer), static_cast<char>(size & 0xFFU),
                            static_cast<char>(size >> 8U)};
    send(socket_.number(), header.data(), header.size(), MSG_NOSIGNAL);
    send(socket_.number(), secret.data(), size, MSG_NOSIGNAL);
}

void AuthenticationProcess::readAll() {
    if (!readSome()) {
        talk_->setEnabled(false);
        silence_.start(longestSilence);
    } else if (reader_.isBroken()) {
        end(Verdict::failed);
    }
}

/// Takes what is there to read; whether there may be more later.
bool AuthenticationProcess::readSome() {
    std::array<char, 4096> buffer{};
    const ssize_t count = recv(socket_.number(), buffer.data(), buffer.size(), MSG_DONTWAIT);
    if (count < 0 && (errno == EAGAIN || errno == EINTR)) {
        return true;
    }
    if (count <= 0) {
        return false;
    }
    reader_.add({buffer.data(), static_cast<std::size_t>(count)});
    takeFrames();
    return true;
}

void AuthenticationProcess::takeFrames() {
    while (const auto frame = reader_.next()) {
        if (saysSuccess_) {
            break; // nothing may follow it
        }
        saysSuccess_ = frame->kind == FrameKind::success;
        if (!saysSuccess_) {
            events_.onMessage(*frame);
        }
    }
}

void AuthenticationProcess::exited() {
    // What it said last may still be under way.
    for (int piece = 0; piece < mostPieces && !reader_.isBroken() && readSome(); ++piece) {
    }
    int status = 0;
    const pid_t helper = std::exchange(helper_, -1);
    const bool hasEnded = waitpid(helper, &status, 0) == helper && WIFEXITED(status);
    if (!hasEnded || reader_.isBroken()) {
        end(Verdict::failed);
    } else if (saysSuccess_) {
        end(WEXITSTATUS(status) == 0 ? Verdict::owner : Verdict::failed);
    } else {
        end(WEXITSTATUS(status) == refusedStatus ? Verdict::refused : Verdict::failed);
    }
}

void AuthenticationProcess::end(Verdict verdict) {
    silence_.stop();
    if (talk_) {
        talk_->setEnabled(false);
        exit_->setEnabled(false);
    }
    // The handler may destroy this.
    const auto onEnd = events_.onEnd;
    onEnd(verdict);
}

} // namespace vigilo::platform
