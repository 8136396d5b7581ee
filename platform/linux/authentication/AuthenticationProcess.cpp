#include "platform/linux/authentication/AuthenticationProcess.h"

#include "platform/linux/HelperProgram.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <csignal>
#include <utility>

#include <sys/socket.h>
#include <sys/wait.h>

namespace vigilo::platform {

using authentication::FrameKind;

AuthenticationProcess::AuthenticationProcess(Events events) : events_(std::move(events)) {
    // Without a helper the other end is closed, and that comes from the event loop like any end.
    StartedHelper helper = startHelper("vigilo-authenticate");
    socket_ = std::move(helper.socket);
    helper_ = helper.pid;
    notifier_ = std::make_unique<QSocketNotifier>(socket_.number(), QSocketNotifier::Read);
    QObject::connect(notifier_.get(), &QSocketNotifier::activated, notifier_.get(),
                     [this] { read(); });
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

void AuthenticationProcess::read() {
    std::array<char, 4096> buffer{};
    const ssize_t count = recv(socket_.number(), buffer.data(), buffer.size(), MSG_DONTWAIT);
    if (count < 0 && (errno == EAGAIN || errno == EINTR)) {
        return;
    }
    if (count <= 0) {
        end(saysSuccess_ && hasExitedWell());
        return;
    }
    reader_.add({buffer.data(), static_cast<std::size_t>(count)});
    while (const auto frame = reader_.next()) {
        if (saysSuccess_) {
            break; // nothing may follow it
        }
        saysSuccess_ = frame->kind == FrameKind::success;
        if (!saysSuccess_) {
            events_.onMessage(*frame);
        }
    }
    if (reader_.isBroken()) {
        end(false);
    }
}

bool AuthenticationProcess::hasExitedWell() {
    int status = 0;
    const pid_t helper = std::exchange(helper_, -1);
    return helper > 0 && waitpid(helper, &status, 0) == helper && WIFEXITED(status) &&
           WEXITSTATUS(status) == 0;
}

void AuthenticationProcess::end(bool isOwner) {
    notifier_->setEnabled(false);
    // The handler may destroy this.
    const auto onEnd = events_.onEnd;
    onEnd(isOwner);
}

} // namespace vigilo::platform
