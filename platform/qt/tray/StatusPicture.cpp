#include "platform/qt/tray/StatusPicture.h"

#include <array>
#include <cmath>

#include <QPainter>
#include <QSvgRenderer>
#include <QtEndian>

namespace vigilo::platform {

namespace {

QImage blank(int side) {
    QImage image(side, side, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    return image;
}

QImage tinted(QImage shape, const QColor& color) {
    QPainter painter(&shape);
    painter.setCompositionMode(QPainter::CompositionMode_SourceIn);
    painter.fillRect(shape.rect(), color);
    return shape;
}

} // namespace

QImage statusPicture(const QString& symbol, int side, PanelShade shade) {
    QSvgRenderer renderer(QStringLiteral(":/qt/qml/Vigilo/symbols/%1.svg").arg(symbol));
    if (!renderer.isValid() || side <= 0) {
        return {};
    }
    // The edge needs its own room, a pixel in sixteen.
    const double edge = side / 16.0;
    QImage shape = blank(side);
    QPainter shapePainter(&shape);
    renderer.render(&shapePainter, QRectF(edge, edge, side - 2 * edge, side - 2 * edge));
    shapePainter.end();

    QImage picture = blank(side);
    QPainter painter(&picture);
    painter.setRenderHint(QPainter::SmoothPixmapTransform);
    constexpr int edgeOpacity = 70;
    const bool isDark = shade == PanelShade::dark;
    const QImage around =
        tinted(shape, isDark ? QColor(0, 0, 0, edgeOpacity) : QColor(255, 255, 255, edgeOpacity));
    constexpr int directions = 8;
    for (int direction = 0; direction < directions; ++direction) {
        const double angle = 2 * M_PI * direction / directions;
        painter.drawImage(QPointF(edge * std::cos(angle), edge * std::sin(angle)), around);
    }
    painter.drawImage(QPointF(), tinted(shape, isDark ? QColor(Qt::white) : QColor(30, 30, 30)));
    return picture;
}

PanelShade shadeOf(const QColor& colour) {
    constexpr int middle = 128;
    return qGray(colour.rgb()) < middle ? PanelShade::dark : PanelShade::light;
}

StatusPixmaps statusPixmaps(const QString& symbol) {
    StatusPixmaps pixmaps;
    for (const int side : {16, 22, 24, 32, 36, 44, 48, 64}) {
        const QImage picture =
            statusPicture(symbol, side, PanelShade::dark).convertToFormat(QImage::Format_ARGB32);
        if (picture.isNull()) {
            return {};
        }
        StatusPixmap pixmap{.width = side, .height = side, .argb = {}};
        pixmap.argb.resize(picture.sizeInBytes());
        // Network byte order, as the interface has it.
        qToBigEndian<quint32>(picture.constBits(), picture.sizeInBytes() / 4, pixmap.argb.data());
        pixmaps.append(pixmap);
    }
    return pixmaps;
}

} // namespace vigilo::platform
