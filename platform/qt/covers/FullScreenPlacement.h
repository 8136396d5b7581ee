#pragma once

#include "platform/qt/covers/CoverPlacement.h"
#include "platform/qt/covers/FocusKeeper.h"
#include "platform/qt/covers/GnomeOverview.h"

#include <optional>

namespace vigilo::platform {

/// An ordinary full-screen window that asks for the focus again whenever it is lost: all that a
/// compositor without a protocol for covers allows.
class FullScreenPlacement : public CoverPlacement {
public:
    FullScreenPlacement(QQuickView& view, QScreen& screen);

    void show() override;
    void takeKeyboard() override;

private:
    QQuickView& view_;
    std::optional<FocusKeeper> focusKeeper_; ///< of the one with the keyboard, as is the next
    std::optional<GnomeOverview> overview_;
};

} // namespace vigilo::platform
