#include "platform/qt/prompt/UnlockPromptModel.h"

#include "text/DisplayText.h"

#include <algorithm>
#include <utility>

#include <QEvent>

namespace vigilo::platform {

using authentication::Frame;
using authentication::FrameKind;
using namespace std::chrono_literals;

namespace {

constexpr auto idleLimit = 60s;
// What a module may make the owner wait at most.
constexpr auto longestDelay = 10000ms;

// What a module has to say fits in here; one that says more is cut.
constexpr int longestMessage = 300;

QString notRight() {
    return QStringLiteral("That password is not right.");
}

/// How long the system has the owner wait for the next attempt, in whole seconds; nothing when it
/// has not.
QString waitingTime(std::chrono::milliseconds delay) {
    const auto seconds = std::chrono::ceil<std::chrono::seconds>(delay).count();
    return seconds > 0 ? QStringLiteral(" The next one is checked in %1 s.").arg(seconds)
                       : QString();
}

QString shown(const std::string& text) {
    return QString::fromStdString(displayText(text)).simplified().left(longestMessage);
}

} // namespace

UnlockPromptModel::UnlockPromptModel(QString reason, QString cancelTitle,
                                     std::function<void(bool)> onEnd)
    : reason_(std::move(reason)), cancelTitle_(std::move(cancelTitle)), onEnd_(std::move(onEnd)) {
    idleTimer_.setSingleShot(true);
    connect(&idleTimer_, &QTimer::timeout, this, &UnlockPromptModel::cancel);
    delayTimer_.setSingleShot(true);
    connect(&delayTimer_, &QTimer::timeout, this, [this] {
        if (!isSubmitted_) {
            say(notRight(), true);
        }
        startHelper();
    });
    touch();
    // First: where the system asks everybody for a finger before the password, the reader is taken
    // by then and the password's turn comes at once.
    startFinger();
    startHelper();
}

UnlockPromptModel::~UnlockPromptModel() = default;

void UnlockPromptModel::touch() {
    idleTimer_.start(idleLimit);
}

bool UnlockPromptModel::eventFilter(QObject* watched, QEvent* event) {
    if (event->type() == QEvent::KeyPress) {
        touch();
    }
    return QObject::eventFilter(watched, event);
}

void UnlockPromptModel::startFinger() {
    finger_ = std::make_unique<FingerprintAttempt>(FingerprintAttempt::Events{
        .onHint = [this](const std::string& text,
                         bool isError) { hearReader(shown(text), isError); },
        .onOwner = [this] { end(true); },
    });
}

/// Readers ask for the next try in the same moment, which is not to hide why it is wanted.
void UnlockPromptModel::hearReader(const QString& text, bool isError) {
    if (isError || text.isEmpty()) {
        fingerprintError_ = text;
    }
    fingerprintHint_ =
        isError || fingerprintError_.isEmpty() ? text : fingerprintError_ + ". " + text;
    Q_EMIT changed();
}

void UnlockPromptModel::startHelper() {
    isAsked_ = false;
    isAnswered_ = false;
    hasSpoken_ = false;
    isBusy_ = isSubmitted_;
    delay_ = {};
    question_ = QStringLiteral("Password");
    Q_EMIT changed();
    helper_ = std::make_unique<AuthenticationProcess>(AuthenticationProcess::Events{
        .onMessage = [this](const Frame& frame) { take(frame); },
        .onEnd = [this](Verdict verdict) { helperEnded(verdict); },
    });
}

void UnlockPromptModel::take(const Frame& frame) {
    switch (frame.kind) {
    case FrameKind::hiddenPrompt:
    case FrameKind::visiblePrompt:
        ask(frame.text);
        break;
    case FrameKind::information:
    case FrameKind::error:
        hasSpoken_ = true;
        say(shown(frame.text), frame.kind == FrameKind::error);
        break;
    case FrameKind::delay:
        delay_ = std::clamp<std::chrono::milliseconds>(
            std::chrono::milliseconds(QString::fromStdString(frame.text).toInt()), 0ms,
            longestDelay);
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

void UnlockPromptModel::ask(const std::string& question) {
    isAsked_ = true;
    if (isSubmitted_) {
        answerWhenAsked();
        return;
    }
    // The first question, or one more after an answer.
    isBusy_ = false;
    QString text = shown(question);
    while (text.endsWith(QLatin1Char(':'))) {
        text.chop(1);
    }
    if (!text.isEmpty()) {
        question_ = text;
    }
    Q_EMIT changed();
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
    if (helper_) {
        answerWhenAsked();
    } else {
        startHelper();
    }
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

void UnlockPromptModel::helperEnded(Verdict verdict) {
    if (verdict == Verdict::owner) {
        end(true);
        return;
    }
    isBusy_ = false;
    isAsked_ = false;
    isSubmitted_ = false;
    submitted_.clear();
    if (!isPossible_) {
        Q_EMIT changed();
    } else if (verdict == Verdict::refused && isAnswered_) {
        say(notRight() + waitingTime(delay_), true);
        delayTimer_.start(delay_);
    } else {
        // A new helper would most likely fare the same, so it waits until somebody tries again.
        dropHelper();
        if (verdict == Verdict::failed || !hasSpoken_) {
            say(QStringLiteral("The password cannot be checked now. Try again or use Apple Lock."),
                true);
        } else {
            Q_EMIT changed();
        }
    }
}

/// The helper may be what has called.
void UnlockPromptModel::dropHelper() {
    QTimer::singleShot(0, this, [gone = std::shared_ptr(std::move(helper_))] {});
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
