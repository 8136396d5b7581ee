#include "platform/qt/ContentView.h"

#include "platform/Fatal.h"
#include "platform/qt/covers/Leaving.h"
#include "platform/qt/covers/WaylandGlobals.h"
#include "platform/qt/prompt/ComposeKeys.h"
#include "platform/qt/prompt/PasswordField.h"

#include <utility>

#include <QEvent>
#include <QExposeEvent>
#include <QKeyEvent>
#include <QQuickItem>
#include <QScreen>
#include <QUrl>
#include <QVariant>

namespace vigilo::platform {

ContentView::ContentView(QQmlEngine& engine, const Colour& background,
                         std::function<void()> onCloseRequested)
    : QQuickView(&engine, nullptr), onCloseRequested_(std::move(onCloseRequested)) {
    setColor(QColor::fromRgbF(
        static_cast<float>(background.red), static_cast<float>(background.green),
        static_cast<float>(background.blue), static_cast<float>(background.alpha)));
    setResizeMode(QQuickView::SizeRootObjectToView);
}

void ContentView::load(const std::string& content, QObject* model) {
    setInitialProperties({{QStringLiteral("model"), QVariant::fromValue(model)}});
    setSource(
        QUrl(QStringLiteral("qrc:/qt/qml/Vigilo/%1.qml").arg(QString::fromStdString(content))));
    if (status() != QQuickView::Ready) {
        fatal("the content of a window cannot be made: " + content);
    }
}

void ContentView::unload() {
    setSource({});
    while (!contentItem()->childItems().isEmpty()) {
        delete contentItem()->childItems().constFirst();
    }
}

void ContentView::fitToContent() {
    const QQuickItem& content = *rootObject();
    const QSize size = QSize(qRound(content.implicitWidth()), qRound(content.implicitHeight()))
                           .boundedTo(screen()->availableGeometry().size());
    setMinimumSize(size);
    setMaximumSize(size);
    resize(size);
}

void ContentView::showInFront() {
    stayShown();
    if (!isVisible()) {
        setPosition(screen()->availableGeometry().center() - QPoint(width(), height()) / 2);
    }
    show();
    raise();
    requestActivate();
}

void ContentView::hideSoon() {
    if (waylandDisplay() == nullptr || !isVisible()) {
        hide();
    } else if (!lastPicture_) {
        markAsLeaving(*this, true);
        lastPicture_ = std::make_unique<LastPicture>(*this, [this] {
            stopHiding();
            hide();
        });
    }
}

void ContentView::stayShown() {
    if (lastPicture_) {
        stopHiding();
        // What was not drawn since; a request for an update may still count as made.
        QExposeEvent event(QRect(QPoint(), size()));
        exposeEvent(&event);
    }
}

void ContentView::stopHiding() {
    lastPicture_.reset();
    markAsLeaving(*this, false);
}

bool ContentView::event(QEvent* event) {
    if (event->type() == QEvent::Close) {
        event->ignore();
        if (onCloseRequested_) {
            onCloseRequested_();
        } else {
            hideSoon();
        }
        return true;
    }
    return QQuickView::event(event);
}

void ContentView::keyPressEvent(QKeyEvent* event) {
    const QQuickItem* const before = activeFocusItem();
    QQuickView::keyPressEvent(event);
    const auto* const now = activeFocusItem();
    const bool isTyped = ComposeKeys::begins(event->nativeVirtualKey()) ||
                         (!event->text().isEmpty() && event->text().front().isPrint() &&
                          event->key() != Qt::Key_Space);
    if (now != before && isTyped && qobject_cast<const PasswordField*>(now) != nullptr) {
        QQuickView::keyPressEvent(event);
    }
}

} // namespace vigilo::platform
