#include "privacy/AgentLockView.h"

#include <utility>

#include <QMetaObject>

namespace vigilo {

AgentLockView::AgentLockView(std::shared_ptr<AwakeController> controller, Action unlock,
                             Action useAppleLock)
    : controller_(std::move(controller)), unlock_(std::move(unlock)),
      useAppleLock_(std::move(useAppleLock)),
      observation_(controller_->objectWillChange([this] { readLater(); })) {
    read();
}

void AgentLockView::pressUnlock() {
    unlock_();
}

void AgentLockView::pressUseAppleLock() {
    // It takes this view down, and with it the action that is being called.
    const Action action = useAppleLock_;
    action();
}

QString AgentLockView::header() const {
    if (agentCount_ == 0) {
        return QStringLiteral("AGENT STATUS");
    }
    return QString::number(agentCount_) +
           (agentCount_ == 1 ? QStringLiteral(" AGENT") : QStringLiteral(" AGENTS")) +
           QStringLiteral(" DETECTED");
}

void AgentLockView::readLater() {
    // A change is announced before it is made and rarely comes alone: read once, afterwards.
    if (!std::exchange(willRead_, true)) {
        QMetaObject::invokeMethod(this, &AgentLockView::read, Qt::QueuedConnection);
    }
}

void AgentLockView::read() {
    willRead_ = false;
    const std::vector<AgentSession>& sessions = controller_->agentSessions();
    agents_.show(sessions);
    if (std::exchange(agentCount_, sessions.size()) != sessions.size()) {
        Q_EMIT headerChanged();
    }
    const QString remaining = QString::fromStdString(controller_->remainingLabel());
    if (std::exchange(remaining_, remaining) != remaining) {
        Q_EMIT remainingChanged();
    }
}

} // namespace vigilo
