#pragma once

#include <QDBusConnection>
#include <QObject>
#include <QString>
#include <QStringList>
#include <QVariantMap>

namespace vigilo::platform {

/// Ends the overview of GNOME Shell whenever it opens, for as long as this lives: it shows the
/// windows below a cover. Does nothing where no such shell is on the session bus. Main thread.
class GnomeOverview : public QObject {
    Q_OBJECT

public:
    GnomeOverview();

private Q_SLOTS:
    void take(const QString& interface, const QVariantMap& changed, const QStringList& invalid);

private:
    void end();

    QDBusConnection bus_ = QDBusConnection::sessionBus();
};

} // namespace vigilo::platform
