#include "platform/qt/QtCover.h"

#include <utility>

namespace vigilo::platform {

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
}

} // namespace vigilo::platform
