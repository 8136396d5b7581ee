// Magenta windows of another program, one a display, also on one that comes later, on the toolkit's
// platform. It writes the line "shown" when one was first drawn, "entered" and "left" when one gets
// and loses the keyboard, and "key ..." for each key that they get.
// Usage: other_window normal|full-screen|unmanaged
#include <cstdio>
#include <memory>
#include <string_view>
#include <utility>
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
        if (!std::exchange(isShown_, true)) {
            say(QStringLiteral("shown"));
        }
    }

    void focusInEvent(QFocusEvent*) override { say(QStringLiteral("entered")); }
    void focusOutEvent(QFocusEvent*) override { say(QStringLiteral("left")); }
    void keyPressEvent(QKeyEvent* event) override { say(QStringLiteral("key ") + event->text()); }

private:
    static void say(const QString& line) {
        std::puts(qPrintable(line));
        std::fflush(stdout);
    }

    bool isShown_ = false;
};

} // namespace

int main(int argc, char* argv[]) {
    const QGuiApplication application(argc, argv);
    const std::string_view kind = argc > 1 ? argv[1] : "";
    // They stay when their display goes, for another one: the toolkit may crash over a window that
    // is destroyed while a picture of it is on its way.
    std::vector<std::unique_ptr<OtherWindow>> windows;
    const auto open = [&windows, kind](QScreen* screen) {
        const auto& window = windows.emplace_back(std::make_unique<OtherWindow>());
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
    };
    for (QScreen* const screen : QGuiApplication::screens()) {
        open(screen);
    }
    QObject::connect(&application, &QGuiApplication::screenAdded, &application, open);
    return QGuiApplication::exec();
}
