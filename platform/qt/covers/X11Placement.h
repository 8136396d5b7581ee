#pragma once

#include "platform/qt/covers/CompositorOrder.h"
#include "platform/qt/covers/CoverPlacement.h"
#include "platform/qt/covers/FocusKeeper.h"
#include "platform/qt/covers/GnomeOverview.h"
#include "platform/qt/covers/RootEvents.h"
#include "platform/qt/covers/XwaylandFocus.h"

#include <cstdint>
#include <memory>
#include <optional>

#include <QAbstractNativeEventFilter>
#include <QElapsedTimer>
#include <QRect>
#include <QTimer>

namespace vigilo::platform {

/// A window that no window manager manages, put back on top and in its place whenever another one
/// is mapped or moved in the stack or hides part of it, or somebody moves it; the one with the
/// keyboard grabs it, and tries again for as long as another program has it (an open menu, say). It
/// asks for the focus whenever that is lost: the toolkit has no item to give a key to without it,
/// and the X server of a Wayland session hears no key while a native window has the focus.
class X11Placement : public CoverPlacement, public QAbstractNativeEventFilter {
public:
    X11Placement(QQuickView& view, QScreen& screen);
    ~X11Placement() override;

    void show() override;
    void takeKeyboard() override;

    bool nativeEventFilter(const QByteArray& eventType, void* message, qintptr* result) override;

private:
    void paintGround();
    void readFrame();
    void putOnTop();
    void putUpAnew();
    bool mayBeHidden(const xcb_generic_event_t* event) const;
    void grabKeyboard();
    void tellToolkit();
    bool hasFocus() const;

    QQuickView& view_;
    std::shared_ptr<RootEvents> rootEvents_; ///< once it is shown, as is the next
    std::uint32_t window_ = 0;               ///< the server's number
    QRect frame_;
    QTimer raiseTimer_;
    QElapsedTimer sinceRaise_;
    std::optional<CompositorOrder> order_; ///< once it is shown
    bool isOverlooked_ = false;            ///< by a compositor
    QTimer grabTimer_;
    std::optional<XwaylandFocus> waylandFocus_; ///< of the one with the keyboard, as are the next
    std::optional<FocusKeeper> focusKeeper_;
    std::optional<GnomeOverview> overview_;
};

} // namespace vigilo::platform
