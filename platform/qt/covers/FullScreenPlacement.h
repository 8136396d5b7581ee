#pragma once

#include "platform/qt/covers/CoverPlacement.h"
#include "platform/qt/covers/FocusKeeper.h"
#include "platform/qt/covers/GnomeOverview.h"
#include "platform/qt/covers/GtkShell.h"
#include "platform/qt/covers/LastPicture.h"

#include <memory>
#include <optional>

#include <QElapsedTimer>
#include <QTimer>
#include <QWindow>

namespace vigilo::platform {

class LeavingWindows;

/// An ordinary full-screen window: all that a compositor without a protocol for covers allows. Such
/// a compositor puts each new window on top and gives it the focus, so when that is lost the window
/// becomes a new one, too. Not on Mutter, where a new window belongs to the workspace that is shown
/// then and would leave the others uncovered; there the one with the keyboard has all of them
/// raised.
class FullScreenPlacement : public CoverPlacement {
public:
    FullScreenPlacement(QQuickView& view, QScreen& screen, LeavingWindows& leaving);
    ~FullScreenPlacement() override;

    void show() override;
    void takeKeyboard() override;

private:
    bool hasFocus();
    void comeBack();
    void present();
    void becomeNew();
    void showAnew();
    void removeGround();

    QQuickView& view_;
    LeavingWindows& leaving_;
    bool becomesNew_;
    QElapsedTimer sinceShown_;
    int attempts_ = 0;                       ///< to come back, since the focus was lost
    std::unique_ptr<QWindow> ground_;        ///< in its place while it becomes a new one
    std::optional<LastPicture> lastPicture_; ///< of the one it was
    QTimer groundTimer_;                     ///< until the ground is removed
    bool takesKeyboard_ = false;
    std::optional<FocusKeeper> focusKeeper_;
    std::optional<GnomeOverview> overview_; ///< of the one with the keyboard, as is the next
    std::unique_ptr<GtkShell> gtkShell_;    ///< on Mutter
};

} // namespace vigilo::platform
