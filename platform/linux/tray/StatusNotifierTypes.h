#pragma once

#include <QByteArray>
#include <QDBusArgument>
#include <QList>
#include <QMetaType>
#include <QString>

namespace vigilo::platform {

// What the interface org.kde.StatusNotifierItem carries.

/// A picture: (iiay). Four bytes a pixel, alpha first, rows from the top, colours not multiplied
/// with the opacity.
struct StatusPixmap {
    int width = 0;
    int height = 0;
    QByteArray argb;
};

using StatusPixmaps = QList<StatusPixmap>;

/// What shows while the pointer rests on the item: (sa(iiay)ss).
struct StatusToolTip {
    QString iconName;
    StatusPixmaps pixmaps;
    QString title;
    QString text;
};

QDBusArgument& operator<<(QDBusArgument& argument, const StatusPixmap& pixmap);
const QDBusArgument& operator>>(const QDBusArgument& argument, StatusPixmap& pixmap);
QDBusArgument& operator<<(QDBusArgument& argument, const StatusToolTip& toolTip);
const QDBusArgument& operator>>(const QDBusArgument& argument, StatusToolTip& toolTip);

/// Makes them known to the library; before they are first sent. Any number of times.
void registerStatusNotifierTypes();

} // namespace vigilo::platform

Q_DECLARE_METATYPE(vigilo::platform::StatusPixmap)
Q_DECLARE_METATYPE(vigilo::platform::StatusToolTip)
