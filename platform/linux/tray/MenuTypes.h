#pragma once

#include <QDBusArgument>
#include <QDBusVariant>
#include <QList>
#include <QMetaType>
#include <QStringList>
#include <QVariantMap>

namespace vigilo::platform {

// What the interface com.canonical.dbusmenu carries, as its XML description names it.

/// A line with its properties: (ia{sv}).
struct MenuLine {
    int id = 0;
    QVariantMap properties;
};

/// A line with the lines below it: (ia{sv}av).
struct MenuNode {
    int id = 0;
    QVariantMap properties;
    QList<QDBusVariant> children;
};

/// Names of properties that a line has no longer: (ias).
struct MenuLineRemovals {
    int id = 0;
    QStringList names;
};

/// Something that happened to a line: (isvu).
struct MenuEvent {
    int id = 0;
    QString name;
    QDBusVariant data;
    uint timestamp = 0;
};

/// The keys of a line, each with its modifiers before it: aas.
using MenuShortcut = QList<QStringList>;

QDBusArgument& operator<<(QDBusArgument& argument, const MenuLine& line);
const QDBusArgument& operator>>(const QDBusArgument& argument, MenuLine& line);
QDBusArgument& operator<<(QDBusArgument& argument, const MenuNode& node);
const QDBusArgument& operator>>(const QDBusArgument& argument, MenuNode& node);
QDBusArgument& operator<<(QDBusArgument& argument, const MenuLineRemovals& removals);
const QDBusArgument& operator>>(const QDBusArgument& argument, MenuLineRemovals& removals);
QDBusArgument& operator<<(QDBusArgument& argument, const MenuEvent& event);
const QDBusArgument& operator>>(const QDBusArgument& argument, MenuEvent& event);

/// Makes them known to the library; before they are first sent. Any number of times.
void registerMenuTypes();

} // namespace vigilo::platform

Q_DECLARE_METATYPE(vigilo::platform::MenuLine)
Q_DECLARE_METATYPE(vigilo::platform::MenuNode)
Q_DECLARE_METATYPE(vigilo::platform::MenuLineRemovals)
Q_DECLARE_METATYPE(vigilo::platform::MenuEvent)
