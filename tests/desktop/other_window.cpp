// Magenta windows of another program, one a display, on the toolkit's platform. It writes the line
// "shown" when one was drawn and "key ..." for each key that they get. Usage: other_window
// normal|full-screen|unmanaged
#include <cstdio>
#include <memory>
#include <string_view>
#include <vector>

#include <QGuiApplication>
#include <QKeyEvent>
#include <QPainter>
#include <QRasterWindow>
#include <QScreen>

namespace {

class OtherWindow : public QRasterWindow {
protected:
    void paintEvent(QPaintEvent*) override {
        QPainter(this).fillRect(QRect(QPoint(), size()), QColor(0xFF, 0, 0xFF));
        say(QStringLiteral("shown"));
    }

    void keyPressEvent(QKeyEvent* event) override { say(QStringLiteral("key ") + event->text()); }

private:
    static void say(const QString& line) {
        std::puts(qPrintable(line));
        std::fflush(stdout);
    }
};

} // namespace

int main(int argc, char* argv[]) {
    const QGuiApplication application(argc, argv);
    const std::string_view kind = argc > 1 ? argv[1] : "";
    std::vector<std::unique_ptr<OtherWindow>> windows;
    for (QScreen* const screen : QGuiApplication::screens()) {
        auto& window = windows.emplace_back(std::make_unique<OtherWindow>());
        window->setScreen(screen);
        window->setGeometry(QRect(screen->geometry().topLeft(), QSize(400, 300)));
        if (kind == "unmanaged") {
            window->setFlag(Qt::BypassWindowManagerHint);
        }
        if (kind == "full-screen") {
            window->showFullScreen();
        } else {
            window->show();
        }
    }
    return QGuiApplication::exec();
}
