#include "platform/qt/prompt/KeyboardSource.h"

#include "platform/qt/prompt/WaylandKeyboard.h"
#include "platform/qt/prompt/X11Keyboard.h"

#include <utility>

#include <QGuiApplication>
#include <qpa/qplatformnativeinterface.h>

namespace vigilo::platform {

std::unique_ptr<KeyboardSource> KeyboardSource::make(Listener listener) {
    if (const auto* const x11 = qGuiApp->nativeInterface<QNativeInterface::QX11Application>()) {
        return std::make_unique<X11Keyboard>(x11->connection(), std::move(listener));
    }
    if (QGuiApplication::platformName().startsWith(QLatin1String("wayland"))) {
        auto* const native = QGuiApplication::platformNativeInterface();
        auto* const seat = static_cast<wl_seat*>(native->nativeResourceForIntegration("wl_seat"));
        // To ask a seat that has never had a keyboard for one ends the connection, and the program.
        if (seat != nullptr && native->nativeResourceForIntegration("wl_keyboard") != nullptr) {
            return std::make_unique<WaylandKeyboard>(seat, std::move(listener));
        }
    }
    return nullptr;
}

} // namespace vigilo::platform
