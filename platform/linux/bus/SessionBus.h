#pragma once

#include "platform/RunLoop.h"

#include <chrono>
#include <memory>

#include <QDBusConnection>
#include <QObject>
#include <QString>

namespace vigilo::platform {

/// The session bus of the moment: the one of the start and, when that has ended, whichever comes at
/// its address. Where there was none at the start none is looked for. Main thread.
class SessionBus : public QObject {
    Q_OBJECT

public:
    /// Connects, and waits for as long as the bus takes for it. The run loop outlives it.
    explicit SessionBus(RunLoop& runLoop);
    ~SessionBus() override;

    /// Without a bus when there is none. What stood on an earlier one has to be set up again.
    const QDBusConnection& connection() const { return connection_; }

Q_SIGNALS:
    /// The bus has ended, or there is a new one. From the event loop.
    void changed();

private Q_SLOTS:
    void disconnected();

private:
    void watch();
    void lookLater();
    void look();
    void take(const QString& name);

    RunLoop& runLoop_;
    QDBusConnection connection_;
    QString name_;                    ///< of the connection; none for that of the start
    bool isLooking_ = false;          ///< for the next one
    std::chrono::milliseconds pause_; ///< before the next look
    std::shared_ptr<SessionBus*> self_ = std::make_shared<SessionBus*>(this);
};

} // namespace vigilo::platform
