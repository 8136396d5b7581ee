#include "ui/components/Wishes.h"

#include <QQmlEngine>
#include <QVariant>

namespace vigilo {

Wishes* Wishes::create(QQmlEngine* engine, QJSEngine* /*scripts*/) {
    const QVariant isAnimated = engine->property("isAnimated");
    return new Wishes(!isAnimated.isValid() || isAnimated.toBool(),
                      engine->property("isContrastHigh").toBool());
}

} // namespace vigilo
