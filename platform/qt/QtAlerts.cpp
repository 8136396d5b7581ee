#include "platform/qt/QtAlerts.h"

#include "platform/qt/ContentView.h"
#include "platform/qt/QtWindows.h"
#include "platform/qt/covers/CoverPlacement.h"
#include "platform/qt/covers/Leaving.h"
#include "platform/qt/frame/AlertModel.h"

#include <algorithm>

#include <QEventLoop>
#include <QGuiApplication>
#include <QPointer>

namespace vigilo::platform {

namespace {

QString text(std::string_view utf8) {
    return QString::fromUtf8(utf8);
}

} // namespace

void QtAlerts::warn(std::string_view message, std::string_view informativeText) {
    const Warning warning{.message = text(message), .informativeText = text(informativeText)};
    const bool isFirstRead = panel_ != nullptr && !isOnDisplay(*panel_);
    const auto unread = warnings_.begin() + (isFirstRead ? 1 : 0);
    if (std::find(unread, warnings_.end(), warning) == warnings_.end()) {
        warnings_.push_back(warning);
    }
    if (panel_ != nullptr) {
        if (!isFirstRead) {
            panel_->showInFront();
        }
        return;
    }
    while (!warnings_.empty()) {
        show(warnings_.front());
        warnings_.pop_front();
    }
}

void QtAlerts::show(const Warning& warning) {
    AlertModel model(warning.message, warning.informativeText);
    auto panel =
        windows_.makePanel(QStringLiteral("Vigilo"), Qt::Dialog, "Frame/AlertPanel", &model);
    // Modal to the window it came from only: a lock screen must never wait for it.
    const QPointer<QWindow> parent = QGuiApplication::focusWindow();
    const bool isFromOrdinaryWindow = parent && isOnDisplay(*parent) && !isCover(parent);
    if (isFromOrdinaryWindow) {
        panel->setTransientParent(parent);
        panel->setModality(Qt::WindowModal);
    }
    QEventLoop untilDismissed;
    QObject::connect(&model, &AlertModel::dismissed, panel.get(), &ContentView::hideSoon);
    QObject::connect(panel.get(), &QWindow::visibleChanged, &untilDismissed, [&](bool isVisible) {
        if (!isVisible) {
            untilDismissed.quit();
        }
    });
    panel_ = panel.get();
    panel_->showInFront();
    untilDismissed.exec();
    panel_ = nullptr;
    windows_.discard(std::move(panel));
    if (isFromOrdinaryWindow && parent) {
        parent->requestActivate();
    }
}

} // namespace vigilo::platform
