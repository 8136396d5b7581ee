// Renders a drawing to a square picture. Usage: render_icon DRAWING.svg SIZE PICTURE.png
#include <cstdio>
#include <cstdlib>

#include <QImage>
#include <QPainter>
#include <QString>
#include <QSvgRenderer>

int main(int argc, char* argv[]) {
    const int size = argc == 4 ? QString::fromLocal8Bit(argv[2]).toInt() : 0;
    if (size <= 0) {
        std::fputs("Usage: render_icon DRAWING.svg SIZE PICTURE.png\n", stderr);
        return EXIT_FAILURE;
    }
    QSvgRenderer drawing(QString::fromLocal8Bit(argv[1]));
    QImage picture(size, size, QImage::Format_ARGB32_Premultiplied);
    picture.fill(Qt::transparent);
    QPainter painter(&picture);
    drawing.render(&painter);
    painter.end();
    if (!drawing.isValid() || !picture.save(QString::fromLocal8Bit(argv[3]))) {
        std::fprintf(stderr, "render_icon: %s cannot be rendered\n", argv[1]);
        return EXIT_FAILURE;
    }
    return EXIT_SUCCESS;
}
