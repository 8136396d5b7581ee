#pragma once

#include <QColor>
#include <QObject>
#include <QtQml/qqmlregistration.h>

namespace vigilo {

/// One soft light of a GlowField: a blurred disc.
class Glow : public QObject {
    Q_OBJECT
    Q_PROPERTY(QColor color MEMBER color NOTIFY changed)
    Q_PROPERTY(double diameter MEMBER diameter NOTIFY changed)
    Q_PROPERTY(double blur MEMBER blur NOTIFY changed)
    Q_PROPERTY(double offsetX MEMBER offsetX NOTIFY changed)
    Q_PROPERTY(double offsetY MEMBER offsetY NOTIFY changed)
    QML_ELEMENT

public:
    using QObject::QObject;

    QColor color;
    double diameter = 1; ///< points
    double blur = 1;     ///< standard deviation in points
    double offsetX = 0;  ///< points from the field's centre
    double offsetY = 0;

Q_SIGNALS:
    void changed();
};

} // namespace vigilo
