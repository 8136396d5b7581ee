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
    : descriptors_(std::move(descriptors)), content_(coverSpec.content), model_(coverSpec.model),
      view_(engine, coverSpec.background, [] {}), placement_(makeCoverPlacement(view_, screen)) {
    view_.setTitle(QString::fromStdString(coverSpec.title));
}

void QtCover::orderFrontRegardless() {
    if (placement_) {
        barrier_ = InputBarrier::raise();
        placement_->show();
        // The bare grounds of all covers come first: what matters is that nothing is seen.
        QMetaObject::invokeMethod(
            &view_, [this] { view_.load(content_, model_); }, Qt::QueuedConnection);
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
    barrier_.reset();
    QTimer::singleShot(loanAfterEnd, qGuiApp, [loan = std::move(descriptors_)] {});
}

} // namespace vigilo::platform
