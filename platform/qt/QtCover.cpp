#include "platform/qt/QtCover.h"

#include <chrono>
#include <utility>

#include <QGuiApplication>
#include <QTimer>

namespace vigilo::platform {

namespace {
using namespace std::chrono_literals;
// By then the windows below are drawn anew, for which they may need descriptors, too.
constexpr auto loanAfterEnd = 500ms;
} // namespace

QtCover::QtCover(QQmlEngine& engine, const CoverSpec& coverSpec, QScreen& screen,
                 DescriptorReserve::Loan descriptors)
    : descriptors_(std::move(descriptors)),
      view_(engine, coverSpec.content, coverSpec.model, coverSpec.background, [] {}),
      placement_(makeCoverPlacement(view_, screen)) {
    view_.setTitle(QString::fromStdString(coverSpec.title));
}

void QtCover::orderFrontRegardless() {
    if (placement_) {
        placement_->show();
    }
}

void QtCover::makeKey() {
    if (placement_) {
        placement_->takeKeyboard();
    }
}

void QtCover::close() {
    placement_.reset();
    view_.destroy();
    QTimer::singleShot(loanAfterEnd, qGuiApp, [loan = std::move(descriptors_)] {});
}

} // namespace vigilo::platform
