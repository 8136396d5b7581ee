#include "ui/components/Emblem.h"

#include "ui/components/Symbol.h"

#include <QLinearGradient>
#include <QPainter>

namespace vigilo {

Emblem::Emblem(QQuickItem* parent) : QQuickPaintedItem(parent) {
    connect(this, &Emblem::changed, this, [this] { update(); });
}

void Emblem::paint(QPainter* painter) {
    painter->setRenderHint(QPainter::Antialiasing);
    QLinearGradient gradient(0, 0, width(), height());
    gradient.setColorAt(0, from_);
    gradient.setColorAt(1, to_);
    painter->setPen(Qt::NoPen);
    painter->setBrush(gradient);
    painter->drawRoundedRect(QRectF(0, 0, width(), height()), cornerRadius_, cornerRadius_);
    paintSymbol(*painter, QStringLiteral("bolt.shield.fill"), Qt::white,
                QRectF((width() - symbolSize_) / 2, (height() - symbolSize_) / 2, symbolSize_,
                       symbolSize_));
}

} // namespace vigilo
