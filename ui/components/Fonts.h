#pragma once

#include <QObject>
#include <QString>
#include <QtQml/qqmlregistration.h>

namespace vigilo {

/// The families that texts are set in.
class Fonts : public QObject {
    Q_OBJECT
    Q_PROPERTY(QString systemFamily READ systemFamily CONSTANT)
    Q_PROPERTY(QString roundedFamily READ roundedFamily CONSTANT)
    Q_PROPERTY(QString monospacedFamily READ monospacedFamily CONSTANT)
    QML_ELEMENT
    QML_SINGLETON

public:
    using QObject::QObject;

    /// The desktop's own.
    static QString systemFamily();

    /// Quicksand where it is installed, else the desktop's own.
    static QString roundedFamily();

    /// The desktop's own with a fixed width.
    static QString monospacedFamily();
};

} // namespace vigilo
