#pragma once

#include "platform/qt/prompt/KeyboardSource.h"

#include <cstdint>

#include <QAbstractNativeEventFilter>
#include <QTimer>

struct xcb_connection_t;

namespace vigilo::platform {

/// The keyboard of an X server: asked again after each event that may have changed it.
class X11Keyboard : public KeyboardSource, private QAbstractNativeEventFilter {
public:
    X11Keyboard(xcb_connection_t* server, Listener listener);
    ~X11Keyboard() override;

private:
    bool nativeEventFilter(const QByteArray& eventType, void* message, qintptr* result) override;
    void read();
    QString layout(unsigned group) const;

    xcb_connection_t* server_;
    Listener listener_;
    std::uint32_t root_;
    std::uint32_t rulesNames_ = 0; ///< the property with the layouts
    int keyboardEvent_ = -1;       ///< of the keyboard extension, where there is one
    QTimer readTimer_;
};

} // namespace vigilo::platform
