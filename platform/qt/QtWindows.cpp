#include "platform/qt/QtWindows.h"

#include "platform/Fatal.h"

#include <utility>

#include <QEvent>
#include <QGuiApplication>
#include <QQmlExtensionPlugin>
#include <QQuickView>
#include <QScreen>
#include <QUrl>
#include <QVariant>

Q_IMPORT_QML_PLUGIN(VigiloPlugin)

namespace vigilo::platform {

namespace {

/// A view that asks before it closes.
class ContentView : public QQuickView {
public:
    ContentView(QQmlEngine* engine, std::function<void()> onCloseRequested)
        : QQuickView(engine, nullptr), onCloseRequested_(std::move(onCloseRequested)) {}

protected:
    bool event(QEvent* event) override {
        if (event->type() == QEvent::Close) {
            event->ignore();
            onCloseRequested_();
            return true;
        }
        return QQuickView::event(event);
    }

private:
    std::function<void()> onCloseRequested_;
};

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
    auto view = std::make_unique<ContentView>(&engine_, std::move(onCloseRequested));
    view->setFlags(Qt::Window | Qt::FramelessWindowHint);
    view->setTitle(QString::fromStdString(windowSpec.title));
    view->setColor(QColor::fromRgbF(static_cast<float>(windowSpec.background.red),
                                    static_cast<float>(windowSpec.background.green),
                                    static_cast<float>(windowSpec.background.blue),
                                    static_cast<float>(windowSpec.background.alpha)));
    const QSize size(windowSpec.width, windowSpec.height);
    view->setMinimumSize(size);
    view->setMaximumSize(size);
    view->resize(size);
    view->setResizeMode(QQuickView::SizeRootObjectToView);
    view->setInitialProperties({{QStringLiteral("model"), QVariant::fromValue(windowSpec.model)}});
    view->setSource(QUrl(QStringLiteral("qrc:/qt/qml/Vigilo/%1.qml")
                             .arg(QString::fromStdString(windowSpec.content))));
    if (view->status() != QQuickView::Ready) {
        fatal("the content of a window cannot be made: " + windowSpec.content);
    }
    return std::make_unique<QtWindow>(std::move(view));
}

} // namespace vigilo::platform
