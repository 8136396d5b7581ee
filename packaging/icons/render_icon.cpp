// Renders a drawing to a square picture, as a file of a known format or as bare RGBA pixels,
// premultiplied. Usage: render_icon DRAWING.svg SIZE PICTURE.png|PICTURE.rgba
#include <cstdio>
#include <cstdlib>

#include <QFile>
#include <QImage>
#include <QPainter>
#include <QString>
#include <QSvgRenderer>

namespace {

bool save(const QImage& picture, const QString& name) {
    if (!name.endsWith(QLatin1String(".rgba"))) {
        return picture.save(name);
    }
    const QImage pixels = picture.convertToFormat(QImage::Format_RGBA8888_Premultiplied);
    QFile file(name);
    return file.open(QIODevice::WriteOnly) &&
           file.write(reinterpret_cast<const char*>(pixels.constBits()), pixels.sizeInBytes()) ==
               pixels.sizeInBytes();
}

} // namespace

int main(int argc, char* argv[]) {
    const int size = argc == 4 ? QString::fromLocal8Bit(argv[2]).toInt() : 0;
    if (size <= 0) {
        std::fputs("Usage: render_icon DRAWING.svg SIZE PICTURE.png|PICTURE.rgba\n", stderr);
        return EXIT_FAILURE;
    }
    QSvgRenderer drawing(QString::fromLocal8Bit(argv[1]));
    QImage picture(size, size, QImage::Format_ARGB32_Premultiplied);
    picture.fill(Qt::transparent);
    QPainter painter(&picture);
    drawing.render(&painter);
    painter.end();
    if (!drawing.isValid() || !save(picture, QString::fromLocal8Bit(argv[3]))) {
        std::fprintf(stderr, "render_icon: %s cannot be rendered\n", argv[1]);
        return EXIT_FAILURE;
    }
    return EXIT_SUCCESS;
}
