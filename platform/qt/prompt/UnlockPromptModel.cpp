#include "platform/qt/prompt/UnlockPromptModel.h"

#include <algorithm>
#include <utility>

namespace vigilo::platform {

using authentication::Frame;
using authentication::FrameKind;
using namespace std::chrono_literals;

namespace {

constexpr auto idleLimit = 60s;
// What a module may make the owner wait at most.
constexpr auto longestDelay = 10000ms;

QString shown(const std::string& text) {
    return QString::fromStdString(text).simplified();
}

} // namespace

UnlockPromptModel::UnlockPromptModel(QString reason, QString cancelTitle,
                                     std::function<void(bool)> onEnd)
    : reason_(std::move(reason)), cancelTitle_(std::move(cancelTitle)), onEnd_(std::move(onEnd)) {
    idleTimer_.setSingleShot(true);
    connect(&idleTimer_, &QTimer::timeout, this, &UnlockPromptModel::cancel);
    delayTimer_.setSingleShot(true);
    connect(&delayTimer_, &QTimer::timeout, this, &UnlockPromptModel::startHelper);
    touch();
    startHelper();
}

UnlockPromptModel::~UnlockPromptModel() = default;

void UnlockPromptModel::touch() {
    idleTimer_.start(idleLimit);
}

void UnlockPromptModel::startHelper() {
    isAsked_ = false;
    isAnswered_ = false;
    isBusy_ = isSubmitted_;
    delay_ = {};
    Q_EMIT changed();
    helper_ = std::make_unique<AuthenticationProcess>(AuthenticationProcess::Events{
        .onMessage = [this](const Frame& frame) { take(frame); },
        .onEnd = [this](bool isOwner) { helperEnded(isOwner); },
    });
}

void UnlockPromptModel::take(const Frame& frame) {
    switch (frame.kind) {
    case FrameKind::hiddenPrompt:
    case FrameKind::visiblePrompt:
        isAsked_ = true;
        answerWhenAsked();
        break;
    case FrameKind::information:
        say(shown(frame.text), false);
        break;
    case FrameKind::error:
        say(shown(frame.text), true);
        break;
    case FrameKind::delay:
        delay_ = std::min<std::chrono::milliseconds>(
            std::chrono::milliseconds(QString::fromStdString(frame.text).toInt()), longestDelay);
        break;
    case FrameKind::impossible:
        isPossible_ = false;
        say(QStringLiteral("No password can be checked here. Apple Lock is the way out."), true);
        break;
    case FrameKind::success:
    case FrameKind::answer:
        break; // not passed on as messages
    }
}

void UnlockPromptModel::submit(PasswordField* field) {
    touch();
    if (isBusy_ || !isPossible_ || field == nullptr) {
        return;
    }
    submitted_.clear();
    submitted_.append(field->text().view());
    field->clear();
    isSubmitted_ = true;
    isBusy_ = true;
    say({}, false);
    answerWhenAsked();
}

void UnlockPromptModel::answerWhenAsked() {
    if (isAsked_ && isSubmitted_) {
        isAsked_ = false;
        isSubmitted_ = false;
        isAnswered_ = true;
        helper_->answer(submitted_.view());
        submitted_.clear();
    }
}

void UnlockPromptModel::helperEnded(bool isOwner) {
    if (isOwner) {
        end(true);
        return;
    }
    isBusy_ = false;
    if (!isPossible_) {
        Q_EMIT changed();
        return;
    }
    if (!isAnswered_) {
        // It ended before anybody could be wrong; a new one would do the same.
        isPossible_ = false;
        say(QStringLiteral("The password cannot be checked now. Apple Lock is the way out."), true);
        return;
    }
    say(QStringLiteral("That password is not right."), true);
    delayTimer_.start(delay_);
}

void UnlockPromptModel::say(const QString& message, bool isError) {
    message_ = message;
    isError_ = isError;
    Q_EMIT changed();
}

void UnlockPromptModel::cancel() {
    end(false);
}

void UnlockPromptModel::end(bool isOwner) {
    idleTimer_.stop();
    delayTimer_.stop();
    submitted_.clear();
    if (const auto onEnd = std::exchange(onEnd_, nullptr)) {
        onEnd(isOwner);
    }
}

} // namespace vigilo::platform
