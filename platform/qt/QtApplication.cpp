#include "platform/qt/QtApplication.h"

#include "platform/qt/ContentView.h"
#include "platform/qt/QtWindows.h"
#include "platform/qt/covers/CoverPlacement.h"
#include "platform/qt/covers/Leaving.h"

#include <algorithm>

#include <QEvent>
#include <QGuiApplication>
#include <QIcon>
#include <QImage>
#include <QPixmap>
#include <QResource>
#include <QWindow>

namespace vigilo::platform {

QtApplication::QtApplication(QtWindows& windows)
    : signalNotifier_(signals_.descriptor(), QSocketNotifier::Read), windows_(windows) {
    connect(&signalNotifier_, &QSocketNotifier::activated, this, [this] {
        // Once is enough, and the byte stays unread: a second signal finds the loop ending anyway.
        signalNotifier_.setEnabled(false);
        terminate();
    });
    QGuiApplication::setQuitOnLastWindowClosed(false);
    qGuiApp->installEventFilter(this);
}

QtApplication::~QtApplication() {
    windows_.discard(std::move(aboutPanel_));
}

void QtApplication::loadIcon() {
    QIcon icon;
    for (const int size : {16, 32, 64}) {
        const QResource pixels(QStringLiteral(":/vigilo/%1.rgba").arg(size));
        icon.addPixmap(QPixmap::fromImage(
            QImage(pixels.data(), size, size, QImage::Format_RGBA8888_Premultiplied)));
    }
    QGuiApplication::setWindowIcon(icon);
}

void QtApplication::activateIgnoringOtherApps() {
    const QWindowList windows = QGuiApplication::topLevelWindows();
    if (std::any_of(windows.begin(), windows.end(), isCover)) {
        return; // already in front of everything, and nothing may come before it
    }
    for (QWindow* window : windows) {
        if (isOnDisplay(*window)) {
            window->raise();
            window->requestActivate();
        }
    }
}

bool QtApplication::hasVisibleWindows() const {
    const QWindowList windows = QGuiApplication::topLevelWindows();
    return std::any_of(windows.begin(), windows.end(), [](const QWindow* window) {
        return isOnDisplay(*window) && window->windowState() != Qt::WindowMinimized;
    });
}

void QtApplication::orderFrontStandardAboutPanel() {
    if (!aboutPanel_) {
        aboutPanel_ = windows_.makePanel(QStringLiteral("About Vigilo"), Qt::Dialog,
                                         "Frame/AboutPanel", nullptr);
    }
    aboutPanel_->showInFront();
}

void QtApplication::useActivationToken(const std::string& token) {
    if (!token.empty()) {
        // The toolkit takes it from there with the next activation.
        qputenv("XDG_ACTIVATION_TOKEN", QByteArray::fromStdString(token));
    }
}

void QtApplication::terminate() {
    QCoreApplication::exit(0);
}

bool QtApplication::eventFilter(QObject* watched, QEvent* event) {
    // The session manager's end arrives as a request to quit, which Qt would grant only if every
    // window agreed to close; closing ours merely hides it, so the request is taken here.
    if (watched == qGuiApp && event->type() == QEvent::Quit) {
        terminate();
        return true;
    }
    return QObject::eventFilter(watched, event);
}

} // namespace vigilo::platform
