#pragma once

#include "platform/Menu.h"
#include "platform/linux/tray/MenuTypes.h"

#include <vector>

#include <QDBusAbstractAdaptor>
#include <QDBusConnection>
#include <QDBusContext>
#include <QObject>

namespace vigilo::platform {

/// A menu on the session bus, by the interface com.canonical.dbusmenu. Only what differs between
/// two menus is told, and a line that stays keeps its number, so that a menu that is open goes on
/// being so. Submenus are not needed here and not exported. Main thread.
class MenuExport : public QObject, protected QDBusContext {
    Q_OBJECT

public:
    /// Offers the menu at a path of the connection, which may be without a bus.
    MenuExport(QDBusConnection bus, const QString& path, MenuRequests requests);
    ~MenuExport() override;

    void setMenu(const Menu& menu);

    const QString& path() const { return path_; }
    uint revision() const { return revision_; }

    /// The layout below a line, for MenuAdaptor; an error to the caller when there is no such line.
    MenuNode layout(int parent, int depth, const QStringList& names) const;
    QList<MenuLine> lines(const QList<int>& ids, const QStringList& names) const;
    QDBusVariant property(int id, const QString& name) const;
    bool isLine(int id) const;

    /// What a panel tells of a line.
    void happened(int id, const QString& event);

    /// Whether the menu has changed now that it is about to be shown.
    bool aboutToShow();

    /// Answers the call that is being served with an error about a line that is not there.
    void refuse(int id) const;

private:
    struct Line {
        int id = 0;
        MenuItem item;
        QVariantMap properties;
    };

    const Line* find(int id) const;
    void send(const QString& signal, const QVariantList& arguments);

    QDBusConnection bus_;
    QString path_;
    MenuRequests requests_;
    Menu menu_;
    std::vector<Line> lines_;
    int lastId_ = 0; ///< the root has number 0
    uint revision_ = 1;
};

/// The interface's methods and properties.
class MenuAdaptor : public QDBusAbstractAdaptor {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "com.canonical.dbusmenu")
    Q_PROPERTY(uint Version READ version)
    Q_PROPERTY(QString TextDirection READ textDirection)
    Q_PROPERTY(QString Status READ status)
    Q_PROPERTY(QStringList IconThemePath READ iconThemePath)

public:
    explicit MenuAdaptor(MenuExport& menu);

    static uint version() { return 3; }
    static QString textDirection() { return QStringLiteral("ltr"); }
    static QString status() { return QStringLiteral("normal"); }
    static QStringList iconThemePath() { return {}; }

public Q_SLOTS:
    uint GetLayout(int parentId, int recursionDepth, const QStringList& propertyNames,
                   vigilo::platform::MenuNode& layout);
    QList<vigilo::platform::MenuLine> GetGroupProperties(const QList<int>& ids,
                                                         const QStringList& propertyNames);
    QDBusVariant GetProperty(int id, const QString& name);
    void Event(int id, const QString& eventId, const QDBusVariant& data, uint timestamp);
    QList<int> EventGroup(const QList<vigilo::platform::MenuEvent>& events);
    bool AboutToShow(int id);
    QList<int> AboutToShowGroup(const QList<int>& ids, QList<int>& idErrors);

Q_SIGNALS:
    void ItemsPropertiesUpdated(const QList<vigilo::platform::MenuLine>& updatedProps,
                                const QList<vigilo::platform::MenuLineRemovals>& removedProps);
    void LayoutUpdated(uint revision, int parent);
    void ItemActivationRequested(int id, uint timestamp);

private:
    MenuExport& menu_;
};

} // namespace vigilo::platform
