#include "ui/components/Wishes.h"

#include <QEvent>
#include <QQmlEngine>
#include <QVariant>

namespace vigilo {

Wishes::Wishes(QObject& engine) : engine_(engine) {
    engine.installEventFilter(this);
}

Wishes* Wishes::create(QQmlEngine* engine, QJSEngine* /*scripts*/) {
    return new Wishes(*engine);
}

bool Wishes::isAnimated() const {
    const QVariant isAnimated = engine_.property("isAnimated");
    return !isAnimated.isValid() || isAnimated.toBool();
}

bool Wishes::isContrastHigh() const {
    return engine_.property("isContrastHigh").toBool();
}

bool Wishes::eventFilter(QObject* watched, QEvent* event) {
    if (event->type() == QEvent::DynamicPropertyChange) {
        Q_EMIT changed();
    }
    return QObject::eventFilter(watched, event);
}

} // namespace vigilo
