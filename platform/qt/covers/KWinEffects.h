#pragma once

#include <memory>

#include <QDBusConnection>
#include <QObject>
#include <QStringList>

namespace vigilo::platform {

/// Takes those effects out of KWin that show the windows below a cover, until the end of this: a
/// gesture opens them, or the pointer in a corner of the display. Should the program die,
/// vigilo-lock has them come back. Does nothing where KWin is not on the session bus. Main thread.
class KWinEffects : public QObject {
    Q_OBJECT

public:
    /// The one that is in use already, or else a new one.
    static std::shared_ptr<KWinEffects> suspend();

    ~KWinEffects() override;

private:
    KWinEffects();

    void unload(const QStringList& loaded);
    void send(const QString& method, const QString& effect) const;

    QDBusConnection bus_ = QDBusConnection::sessionBus();
    QStringList unloaded_;
};

} // namespace vigilo::platform
