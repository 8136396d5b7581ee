#include "platform/linux/tray/MenuTypes.h"

#include <QDBusMetaType>

namespace vigilo::platform {

QDBusArgument& operator<<(QDBusArgument& argument, const MenuLine& line) {
    argument.beginStructure();
    argument << line.id << line.properties;
    argument.endStructure();
    return argument;
}

const QDBusArgument& operator>>(const QDBusArgument& argument, MenuLine& line) {
    argument.beginStructure();
    argument >> line.id >> line.properties;
    argument.endStructure();
    return argument;
}

QDBusArgument& operator<<(QDBusArgument& argument, const MenuNode& node) {
    argument.beginStructure();
    argument << node.id << node.properties << node.children;
    argument.endStructure();
    return argument;
}

const QDBusArgument& operator>>(const QDBusArgument& argument, MenuNode& node) {
    argument.beginStructure();
    argument >> node.id >> node.properties >> node.children;
    argument.endStructure();
    return argument;
}

QDBusArgument& operator<<(QDBusArgument& argument, const MenuLineRemovals& removals) {
    argument.beginStructure();
    argument << removals.id << removals.names;
    argument.endStructure();
    return argument;
}

const QDBusArgument& operator>>(const QDBusArgument& argument, MenuLineRemovals& removals) {
    argument.beginStructure();
    argument >> removals.id >> removals.names;
    argument.endStructure();
    return argument;
}

QDBusArgument& operator<<(QDBusArgument& argument, const MenuEvent& event) {
    argument.beginStructure();
    argument << event.id << event.name << event.data << event.timestamp;
    argument.endStructure();
    return argument;
}

const QDBusArgument& operator>>(const QDBusArgument& argument, MenuEvent& event) {
    argument.beginStructure();
    argument >> event.id >> event.name >> event.data >> event.timestamp;
    argument.endStructure();
    return argument;
}

void registerMenuTypes() {
    qDBusRegisterMetaType<MenuLine>();
    qDBusRegisterMetaType<QList<MenuLine>>();
    qDBusRegisterMetaType<MenuNode>();
    qDBusRegisterMetaType<MenuLineRemovals>();
    qDBusRegisterMetaType<QList<MenuLineRemovals>>();
    qDBusRegisterMetaType<MenuEvent>();
    qDBusRegisterMetaType<QList<MenuEvent>>();
    qDBusRegisterMetaType<MenuShortcut>();
    qDBusRegisterMetaType<QList<int>>();
}

} // namespace vigilo::platform
