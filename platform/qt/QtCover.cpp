#include "platform/qt/QtCover.h"

#include "platform/qt/covers/Leaving.h"

#include <utility>

namespace vigilo::platform {

QtCover::QtCover(QQmlEngine& engine, const CoverSpec& coverSpec, QScreen& screen,
                 DescriptorReserve::Loan descriptors, LeavingWindows& leaving)
    : descriptors_(std::move(descriptors)), content_(coverSpec.content), model_(coverSpec.model),
      leaving_(leaving), view_(std::make_unique<ContentView>(engine, coverSpec.background, [] {})),
      placement_(makeCoverPlacement(*view_, screen, leaving)) {
    view_->setTitle(QString::fromStdString(coverSpec.title));
}

QtCover::~QtCover() {
    QtCover::close();
    view_->unload();
    leaving_.take(std::move(view_), std::move(descriptors_));
}

void QtCover::orderFrontRegardless() {
    if (placement_) {
        barrier_ = InputBarrier::raise();
        placement_->show();
        // The bare grounds of all covers come first: what matters is that nothing is seen.
        QMetaObject::invokeMethod(
            &loading_,
            [this] {
                if (placement_) {
                    view_->load(content_, model_);
                }
            },
            Qt::QueuedConnection);
    }
}

void QtCover::makeKey() {
    if (placement_) {
        placement_->takeKeyboard();
    }
}

void QtCover::close() {
    if (placement_) {
        placement_.reset();
        leaveDisplay(*view_);
        barrier_.reset();
    }
}

} // namespace vigilo::platform
