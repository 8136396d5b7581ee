#pragma once

#include <QObject>
#include <QtQml/qqmlregistration.h>

class QJSEngine;
class QQmlEngine;

namespace vigilo {

/// What the desktop's settings ask of the look of programs, as the engine's properties of these
/// names tell at the moment; without them, nothing out of the usual.
class Wishes : public QObject {
    Q_OBJECT
    Q_PROPERTY(bool isAnimated READ isAnimated NOTIFY changed)
    Q_PROPERTY(bool isContrastHigh READ isContrastHigh NOTIFY changed)
    QML_ELEMENT
    QML_SINGLETON

public:
    static Wishes* create(QQmlEngine* engine, QJSEngine* scripts);

    /// Whether things may move: some people are unwell when they do.
    bool isAnimated() const;

    /// Whether texts and edges are to stand out more than they look good.
    bool isContrastHigh() const;

Q_SIGNALS:
    void changed();

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    explicit Wishes(QObject& engine);

    const QObject& engine_;
};

} // namespace vigilo
