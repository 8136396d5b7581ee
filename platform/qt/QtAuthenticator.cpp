#include "platform/qt/QtAuthenticator.h"

#include "platform/Fatal.h"
#include "platform/qt/covers/CoverPlacement.h"
#include "platform/qt/covers/Leaving.h"
#include "platform/qt/prompt/UnlockPromptModel.h"

#include <utility>

#include <QGuiApplication>
#include <QQmlComponent>
#include <QQmlEngine>
#include <QQmlExtensionPlugin>
#include <QQuickView>

Q_IMPORT_QML_PLUGIN(Vigilo_PromptPlugin)

namespace vigilo::platform {

namespace {

/// The cover with the keyboard, else the first one; without any, the window with the keyboard, if
/// it stays.
QQuickView* host() {
    auto* const focused = qobject_cast<QQuickView*>(QGuiApplication::focusWindow());
    if (isCover(focused)) {
        return focused;
    }
    for (QWindow* const window : QGuiApplication::topLevelWindows()) {
        auto* const view = qobject_cast<QQuickView*>(window);
        if (isCover(view)) {
            return view;
        }
    }
    return focused != nullptr && isOnDisplay(*focused) ? focused : nullptr;
}

} // namespace

QtAuthenticator::QtAuthenticator() = default;

QtAuthenticator::~QtAuthenticator() = default;

void QtAuthenticator::evaluate(const std::string& reason, const std::string& cancelTitle,
                               std::function<void(bool isOwner)> reply) {
    end(false);
    QQuickView* const view = host();
    if (view == nullptr) {
        reply(false);
        return;
    }
    reply_ = std::move(reply);
    model_ = std::make_unique<UnlockPromptModel>(QString::fromStdString(reason),
                                                 QString::fromStdString(cancelTitle),
                                                 [this](bool isOwner) { end(isOwner); });
    view->installEventFilter(model_.get());
    QQmlComponent component(view->engine(),
                            QUrl(QStringLiteral("qrc:/qt/qml/Vigilo/Prompt/UnlockPrompt.qml")));
    sheet_ = qobject_cast<QQuickItem*>(component.createWithInitialProperties(
        {{QStringLiteral("model"), QVariant::fromValue(model_.get())},
         {QStringLiteral("parent"), QVariant::fromValue(view->contentItem())}}));
    if (!sheet_) {
        fatal("the prompt cannot be made: " + component.errorString().toStdString());
    }
    // It goes with the window.
    sheet_->setParent(view->contentItem());
    QObject::connect(sheet_, &QObject::destroyed, model_.get(), [this] { end(false); });
    focusBefore_ = view->activeFocusItem();
    sheet_->forceActiveFocus(Qt::PopupFocusReason);
}

void QtAuthenticator::end(bool isOwner) {
    const auto reply = std::exchange(reply_, nullptr);
    if (!reply) {
        return;
    }
    // The model may be what has called, and one of the sheet's buttons what has called it: both go
    // later, the sheet first, since it looks at the model.
    removeSheet();
    model_.release()->deleteLater();
    reply(isOwner);
}

void QtAuthenticator::removeSheet() {
    if (sheet_) {
        sheet_->setVisible(false);
        sheet_->setEnabled(false);
        sheet_->disconnect(model_.get());
        sheet_->deleteLater();
        sheet_.clear();
    }
    if (focusBefore_) {
        focusBefore_->forceActiveFocus(Qt::PopupFocusReason);
    }
}

} // namespace vigilo::platform
