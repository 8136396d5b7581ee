#pragma once

#include "platform/Windows.h"
#include "platform/linux/DescriptorReserve.h"
#include "platform/qt/ContentView.h"
#include "platform/qt/covers/CoverPlacement.h"
#include "platform/qt/covers/InputBarrier.h"
#include "platform/qt/covers/LeavingWindows.h"

#include <memory>
#include <string>

class QScreen;

namespace vigilo::platform {

/// A cover over one of the toolkit's screens. It has the loan for as long as it is there, and
/// a moment longer, as `leaving`, which outlives it, has its window.
class QtCover : public Cover {
public:
    QtCover(QQmlEngine& engine, const CoverSpec& coverSpec, QScreen& screen,
            DescriptorReserve::Loan descriptors, LeavingWindows& leaving);
    ~QtCover() override;

    void orderFrontRegardless() override;
    void makeKey() override;
    void close() override;

private:
    DescriptorReserve::Loan descriptors_;
    std::string content_;
    QObject* model_;
    LeavingWindows& leaving_;
    std::unique_ptr<ContentView> view_;
    std::unique_ptr<CoverPlacement> placement_;
    std::shared_ptr<InputBarrier> barrier_; ///< while it is shown
    QObject loading_;                       ///< what is still to be done for it
};

} // namespace vigilo::platform
