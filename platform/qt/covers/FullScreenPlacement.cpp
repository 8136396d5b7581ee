#include "platform/qt/covers/FullScreenPlacement.h"

#include "platform/qt/covers/Leaving.h"
#include "platform/qt/covers/LeavingWindows.h"
#include "platform/qt/covers/WaylandGlobals.h"

#include <chrono>
#include <functional>
#include <utility>

#include <QGuiApplication>
#include <QPainter>
#include <QQuickView>
#include <QRasterWindow>
#include <QScreen>

#include <gtk-shell.h>

namespace vigilo::platform {

namespace {

using namespace std::chrono_literals;

// Until then the focus may be on its way.
constexpr std::chrono::milliseconds settling = 300ms;
// In this time a desktop lets a window come up, at most.
constexpr auto animation = 1s;
// There may be no keyboard, and so no focus.
constexpr int mostAttempts = 4;

constexpr Qt::WindowFlags coverFlags =
    Qt::Window | Qt::FramelessWindowHint | Qt::WindowStaysOnTopHint;

/// Whether that is known of the compositor; not of Mutter, nor where there is none.
bool keepsNewWindowsInSight() {
    wl_display* const display = waylandDisplay();
    if (display == nullptr) {
        return false;
    }
    bool isMutter = false;
    wl_event_queue* const queue = wl_display_create_queue(display);
    visitGlobals(display, queue, [&](const WaylandGlobal& offered) {
        isMutter = isMutter || offered.interface == gtk_shell1_interface.name;
    });
    wl_event_queue_destroy(queue);
    return !isMutter;
}

/// The bare ground of a cover, which is there sooner than its content.
class Ground : public QRasterWindow {
public:
    Ground(const QQuickView& cover, std::function<void()> onDrawn)
        : colour_(cover.color()), onDrawn_(std::move(onDrawn)) {
        markAsCover(*this);
        setFlags(coverFlags);
        setScreen(cover.screen());
        setGeometry(cover.screen()->geometry());
    }

protected:
    void paintEvent(QPaintEvent*) override {
        QPainter(this).fillRect(QRect(QPoint(), size()), colour_);
        if (onDrawn_) {
            std::exchange(onDrawn_, nullptr)();
        }
    }

private:
    QColor colour_;
    std::function<void()> onDrawn_;
};

} // namespace

FullScreenPlacement::FullScreenPlacement(QQuickView& view, QScreen& screen, LeavingWindows& leaving)
    : view_(view), leaving_(leaving), becomesNew_(keepsNewWindowsInSight()) {
    view_.setFlags(coverFlags);
    view_.setScreen(&screen);
    view_.setGeometry(screen.geometry());
    groundTimer_.setSingleShot(true);
    groundTimer_.setInterval(animation);
    groundTimer_.callOnTimeout(&groundTimer_, [this] { removeGround(); });
}

FullScreenPlacement::~FullScreenPlacement() {
    removeGround();
}

void FullScreenPlacement::show() {
    view_.showFullScreen();
    view_.raise();
    sinceShown_.start();
    focusKeeper_.emplace([this] { return hasFocus(); }, [this] { comeBack(); });
}

void FullScreenPlacement::takeKeyboard() {
    takesKeyboard_ = true;
    view_.requestActivate();
    overview_.emplace();
    gtkShell_ = GtkShell::connect();
}

bool FullScreenPlacement::hasFocus() {
    const QWindow* const window = QGuiApplication::focusWindow();
    const bool result = gtkShell_ ? window == &view_ : isCover(window);
    attempts_ = result ? 0 : attempts_;
    return result;
}

void FullScreenPlacement::comeBack() {
    if (gtkShell_) {
        present();
    } else if (takesKeyboard_) {
        view_.raise();
        view_.requestActivate();
    }
    if (becomesNew_ && !ground_ && attempts_ < mostAttempts &&
        sinceShown_.elapsed() > settling.count()) {
        ++attempts_;
        ground_ = std::make_unique<Ground>(view_, [this] {
            // Not before it has been drawn; and the ground may outlive this.
            QMetaObject::invokeMethod(
                &groundTimer_, [this] { becomeNew(); }, Qt::QueuedConnection);
        });
        ground_->showFullScreen();
    }
}

/// Each cover comes up by having the focus, the one that keeps it last.
void FullScreenPlacement::present() {
    for (QWindow* const window : QGuiApplication::topLevelWindows()) {
        if (window != &view_ && isCover(window)) {
            gtkShell_->present(*window);
        }
    }
    gtkShell_->present(view_);
}

void FullScreenPlacement::becomeNew() {
    lastPicture_.emplace(view_, [this] { showAnew(); });
}

void FullScreenPlacement::showAnew() {
    lastPicture_.reset();
    view_.hide();
    view_.showFullScreen();
    sinceShown_.start();
    groundTimer_.start();
}

void FullScreenPlacement::removeGround() {
    if (ground_) {
        leaveDisplay(*ground_);
        leaving_.take(std::move(ground_));
    }
}

} // namespace vigilo::platform
