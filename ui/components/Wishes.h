#pragma once

#include <QObject>
#include <QtQml/qqmlregistration.h>

class QJSEngine;
class QQmlEngine;

namespace vigilo {

/// What the desktop's settings ask of the look of programs, as the engine's properties of these
/// names tell; without them, nothing out of the usual. They stay as they were when the first window
/// was made.
class Wishes : public QObject {
    Q_OBJECT
    Q_PROPERTY(bool isAnimated READ isAnimated CONSTANT)
    Q_PROPERTY(bool isContrastHigh READ isContrastHigh CONSTANT)
    QML_ELEMENT
    QML_SINGLETON

public:
    static Wishes* create(QQmlEngine* engine, QJSEngine* scripts);

    /// Whether things may move: some people are unwell when they do.
    bool isAnimated() const { return isAnimated_; }

    /// Whether texts and edges are to stand out more than they look good.
    bool isContrastHigh() const { return isContrastHigh_; }

private:
    Wishes(bool isAnimated, bool isContrastHigh)
        : isAnimated_(isAnimated), isContrastHigh_(isContrastHigh) {}

    bool isAnimated_;
    bool isContrastHigh_;
};

} // namespace vigilo
