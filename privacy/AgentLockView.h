#pragma once

#include "core/AwakeController.h"
#include "privacy/AgentRows.h"

#include <functional>
#include <memory>

#include <QObject>
#include <QString>
#include <QtQml/qqmlregistration.h>

namespace vigilo {

/// What a lock screen shows and offers: the agents and the remaining time, read live from the
/// controller, and the two ways out. The QML side only places and binds.
class AgentLockView : public QObject {
    Q_OBJECT
    QML_NAMED_ELEMENT(AgentLockViewModel)
    QML_UNCREATABLE("The program makes it.")
    Q_PROPERTY(QString header READ header NOTIFY headerChanged)
    Q_PROPERTY(QString remaining READ remaining NOTIFY remainingChanged)
    Q_PROPERTY(bool hasAgents READ hasAgents NOTIFY headerChanged)
    Q_PROPERTY(vigilo::AgentRows* agents READ agents CONSTANT)

public:
    using Action = std::function<void()>;

    AgentLockView(std::shared_ptr<AwakeController> controller, Action unlock, Action useAppleLock);

    /// The user wants to unlock.
    Q_INVOKABLE void pressUnlock();

    /// The user wants the system's own lock instead.
    Q_INVOKABLE void pressUseAppleLock();

    QString header() const;
    QString remaining() const { return remaining_; }
    bool hasAgents() const { return agentCount_ > 0; }
    AgentRows* agents() { return &agents_; }

Q_SIGNALS:
    void headerChanged();
    void remainingChanged();

private:
    void readLater();
    void read();

    std::shared_ptr<AwakeController> controller_;
    Action unlock_;
    Action useAppleLock_;
    AgentRows agents_;
    std::size_t agentCount_ = 0;
    QString remaining_;
    bool willRead_ = false;
    Observable::Observation observation_;
};

} // namespace vigilo
