// Loaded into the program beside its toolkit: a touch screen. Every line "x y" on the pipe that
// TOUCH_PIPE names is a tap of a finger at that pixel of the screen, as the display server would
// report it to the toolkit.
#include <cstdlib>
#include <sstream>
#include <string>

#include <QCoreApplication>
#include <QGuiApplication>
#include <QPointingDevice>
#include <QSocketNotifier>
#include <QWindow>
#include <qpa/qwindowsysteminterface.h>

#include <fcntl.h>
#include <unistd.h>

namespace {

const QPointingDevice* touchScreen() {
    static QPointingDevice device(
        QStringLiteral("touch screen of a test"), 1, QInputDevice::DeviceType::TouchScreen,
        QPointingDevice::PointerType::Finger, QInputDevice::Capability::Position, 10, 0);
    static bool isKnown = false;
    if (!isKnown) {
        QWindowSystemInterface::registerInputDevice(&device);
        isKnown = true;
    }
    return &device;
}

void tap(const QPoint& place) {
    QWindow* const window = QGuiApplication::topLevelAt(place);
    if (window == nullptr) {
        return;
    }
    QWindowSystemInterface::TouchPoint finger;
    finger.id = 1;
    finger.pressure = 1;
    finger.area = QRectF(place.x() - 4, place.y() - 4, 8, 8);
    for (const auto state : {QEventPoint::State::Pressed, QEventPoint::State::Released}) {
        finger.state = state;
        QWindowSystemInterface::handleTouchEvent(window, touchScreen(), {finger});
    }
}

void readTaps(int pipe) {
    static std::string pending;
    char bytes[256];
    const ssize_t count = read(pipe, bytes, sizeof bytes);
    pending.append(bytes, count > 0 ? static_cast<std::size_t>(count) : 0);
    for (std::size_t end = pending.find('\n'); end != std::string::npos; end = pending.find('\n')) {
        std::istringstream line(pending.substr(0, end));
        pending.erase(0, end + 1);
        int x = 0;
        int y = 0;
        if (line >> x >> y) {
            tap({x, y});
        }
    }
}

void watch() {
    const char* const path = std::getenv("TOUCH_PIPE");
    const int pipe = path == nullptr ? -1 : open(path, O_RDWR | O_NONBLOCK | O_CLOEXEC);
    if (pipe >= 0) {
        auto* const notifier = new QSocketNotifier(pipe, QSocketNotifier::Read, qApp);
        QObject::connect(notifier, &QSocketNotifier::activated, notifier,
                         [pipe] { readTaps(pipe); });
    }
}

} // namespace

Q_COREAPP_STARTUP_FUNCTION(watch)
