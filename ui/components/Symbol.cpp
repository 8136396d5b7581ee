#include "ui/components/Symbol.h"

#include "platform/Fatal.h"

#include <cmath>

#include <QImage>
#include <QPainter>
#include <QSvgRenderer>

namespace vigilo {

void paintSymbol(QPainter& painter, const QString& name, const QColor& color,
                 const QRectF& square) {
    QSvgRenderer renderer(QStringLiteral(":/qt/qml/Vigilo/symbols/%1.svg").arg(name));
    if (!renderer.isValid()) {
        fatal("there is no symbol named " + name.toStdString());
    }
    // The toolkit hands out a scaled painter on a device that knows nothing of the display's scale.
    const double scale = painter.device()->devicePixelRatioF() * painter.worldTransform().m11();
    const int side = static_cast<int>(std::ceil(square.width() * scale));
    QImage image(side, side, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    QPainter imagePainter(&image);
    imagePainter.setRenderHint(QPainter::Antialiasing);
    const double drawn = square.width() * scale;
    renderer.render(&imagePainter, QRectF(0, 0, drawn, drawn));
    imagePainter.setCompositionMode(QPainter::CompositionMode_SourceIn);
    imagePainter.fillRect(image.rect(), color);
    imagePainter.end();
    image.setDevicePixelRatio(scale);
    painter.drawImage(square.topLeft(), image);
}

Symbol::Symbol(QQuickItem* parent) : QQuickPaintedItem(parent) {}

void Symbol::setName(const QString& name) {
    if (name != name_) {
        name_ = name;
        update();
        Q_EMIT nameChanged();
    }
}

void Symbol::setColor(const QColor& color) {
    if (color != color_) {
        color_ = color;
        update();
        Q_EMIT colorChanged();
    }
}

void Symbol::paint(QPainter* painter) {
    paintSymbol(*painter, name_, color_, QRectF(0, 0, width(), width()));
}

} // namespace vigilo
