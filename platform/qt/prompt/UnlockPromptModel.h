#pragma once

#include "platform/linux/authentication/AuthenticationProcess.h"
#include "platform/linux/authentication/FingerprintAttempt.h"
#include "platform/qt/prompt/PasswordField.h"

#include <chrono>
#include <functional>
#include <memory>

#include <QObject>
#include <QString>
#include <QTimer>
#include <QtQml/qqmlregistration.h>

namespace vigilo::platform {

/// What the prompt for the owner's password shows and does, until it is proved or given up. A
/// helper serves one attempt; a wrong password is answered with a new helper, and one that could
/// not be checked with a new helper for the next attempt. A finger on the reader is as good as the
/// password; neither waits for the other, and the first success is the end of both.
class UnlockPromptModel : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("The program makes it.")
    Q_PROPERTY(QString reason READ reason CONSTANT)
    Q_PROPERTY(QString cancelTitle READ cancelTitle CONSTANT)
    Q_PROPERTY(QString message READ message NOTIFY changed)
    Q_PROPERTY(QString question READ question NOTIFY changed)
    Q_PROPERTY(QString fingerprintHint READ fingerprintHint NOTIFY changed)
    Q_PROPERTY(bool isFingerprintError READ isFingerprintError NOTIFY changed)
    Q_PROPERTY(bool isError READ isError NOTIFY changed)
    Q_PROPERTY(bool isBusy READ isBusy NOTIFY changed)
    Q_PROPERTY(bool isPossible READ isPossible NOTIFY changed)

public:
    /// `onEnd` is called once, from the event loop.
    UnlockPromptModel(QString reason, QString cancelTitle, std::function<void(bool)> onEnd);
    ~UnlockPromptModel() override;

    /// A password was typed: hands it over and forgets it.
    Q_INVOKABLE void submit(vigilo::platform::PasswordField* field);

    /// Somebody is there: the time after which an unused prompt gives up begins anew. Any key that
    /// is pressed in a window whose events this object filters says so, too.
    Q_INVOKABLE void touch();

    bool eventFilter(QObject* watched, QEvent* event) override;

    Q_INVOKABLE void cancel();

    QString reason() const { return reason_; }
    QString cancelTitle() const { return cancelTitle_; }
    QString message() const { return message_; }

    /// What is to be typed, such as "Password".
    QString question() const { return question_; }

    /// What the fingerprint reader has to say; empty where there is none.
    QString fingerprintHint() const { return fingerprintHint_; }

    bool isFingerprintError() const { return !fingerprintError_.isEmpty(); }
    bool isError() const { return isError_; }
    bool isBusy() const { return isBusy_; }
    bool isPossible() const { return isPossible_; }

Q_SIGNALS:
    void changed();

private:
    void startFinger();
    void hearReader(const QString& text, bool isError);
    void startHelper();
    void take(const authentication::Frame& frame);
    void ask(const std::string& question);
    void helperEnded(Verdict verdict);
    void dropHelper();
    void answerWhenAsked();
    void say(const QString& message, bool isError);
    void end(bool isOwner);

    QString reason_;
    QString cancelTitle_;
    std::function<void(bool)> onEnd_;
    std::unique_ptr<FingerprintAttempt> finger_;
    std::unique_ptr<AuthenticationProcess> helper_;
    SecretText submitted_;
    bool isAsked_ = false;     ///< the helper waits for an answer
    bool isSubmitted_ = false; ///< an answer waits for the helper
    bool isAnswered_ = false;  ///< the helper has had an answer
    bool hasSpoken_ = false;   ///< the helper had something to say
    std::chrono::milliseconds delay_{};
    QString message_;
    QString question_;
    QString fingerprintHint_;
    QString fingerprintError_; ///< the last one, also while the next try is asked for
    bool isError_ = false;
    bool isBusy_ = false;
    bool isPossible_ = true;
    QTimer idleTimer_;
    QTimer delayTimer_;
};

} // namespace vigilo::platform
