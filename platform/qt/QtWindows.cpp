#include "platform/qt/QtWindows.h"

#include "platform/qt/ContentView.h"
#include "platform/qt/QtCover.h"
#include "platform/qt/QtScreens.h"

#include <utility>

#include <QGuiApplication>
#include <QQmlExtensionPlugin>
#include <QScreen>

Q_IMPORT_QML_PLUGIN(VigiloPlugin)
Q_IMPORT_QML_PLUGIN(Vigilo_PrivacyPlugin)

namespace vigilo::platform {

namespace {

class QtWindow : public Window {
public:
    explicit QtWindow(std::unique_ptr<QQuickView> view) : view_(std::move(view)) {}

    void makeKeyAndOrderFront() override {
        if (!view_->isVisible()) {
            const QRect available = view_->screen()->availableGeometry();
            if (!wasShown_) {
                view_->setPosition(available.center() - view_->geometry().center() +
                                   view_->position());
                wasShown_ = true;
            }
        }
        view_->showNormal();
        view_->raise();
        view_->requestActivate();
    }

    void close() override { view_->hide(); }

    bool isVisible() const override {
        return view_->isVisible() && view_->windowState() != Qt::WindowMinimized;
    }

private:
    std::unique_ptr<QQuickView> view_;
    bool wasShown_ = false;
};

} // namespace

QtWindows::QtWindows() {
    engine_.addImportPath(QStringLiteral("qrc:/qt/qml"));
}

std::unique_ptr<Window> QtWindows::makeWindow(const WindowSpec& windowSpec,
                                              std::function<void()> onCloseRequested) {
    auto view = std::make_unique<ContentView>(engine_, windowSpec.content, windowSpec.model,
                                              windowSpec.background, std::move(onCloseRequested));
    view->setFlags(Qt::Window | Qt::FramelessWindowHint);
    view->setTitle(QString::fromStdString(windowSpec.title));
    const QSize size(windowSpec.width, windowSpec.height);
    view->setMinimumSize(size);
    view->setMaximumSize(size);
    view->resize(size);
    return std::make_unique<QtWindow>(std::move(view));
}

std::unique_ptr<Cover> QtWindows::makeCover(const CoverSpec& coverSpec) {
    QScreen* const screen = QtScreens::find(coverSpec.screen.name);
    // Gone since it was listed; the displays will be covered anew in a moment.
    return std::make_unique<QtCover>(
        engine_, coverSpec, screen != nullptr ? *screen : *QGuiApplication::primaryScreen());
}

} // namespace vigilo::platform
