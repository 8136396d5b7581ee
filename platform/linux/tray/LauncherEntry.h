#pragma once

#include "platform/linux/tray/MenuExport.h"

#include <QDBusAbstractAdaptor>
#include <QDBusConnection>
#include <QObject>

namespace vigilo::platform {

/// The program's menu in docks that show a live one, by the interface
/// com.canonical.Unity.LauncherEntry. Main thread.
class LauncherEntry : public QObject {
    Q_OBJECT

public:
    LauncherEntry(QDBusConnection bus, MenuRequests requests);
    ~LauncherEntry() override;

    void setMenu(const Menu& menu);

    /// What the announcement and the answer carry: the program's desktop file and the properties.
    QString application() const;
    QVariantMap properties() const;

private:
    void announce();

    QDBusConnection bus_;
    MenuExport menu_;
    bool isAnnounced_ = false;
};

/// The interface's question.
class LauncherEntryAdaptor : public QDBusAbstractAdaptor {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "com.canonical.Unity.LauncherEntry")

public:
    explicit LauncherEntryAdaptor(LauncherEntry& entry);

public Q_SLOTS:
    QString Query(QVariantMap& properties);

private:
    LauncherEntry& entry_;
};

} // namespace vigilo::platform
