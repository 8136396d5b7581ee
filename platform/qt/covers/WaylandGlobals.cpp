#include "platform/qt/covers/WaylandGlobals.h"

#include <QGuiApplication>
#include <qpa/qplatformnativeinterface.h>

namespace vigilo::platform {

namespace {

using Visitor = std::function<void(const WaylandGlobal&)>;

void globalOffered(void* data, wl_registry* registry, std::uint32_t name, const char* type,
                   std::uint32_t version) {
    (*static_cast<const Visitor*>(data))(
        WaylandGlobal{.interface = type, .version = version, .registry = registry, .name = name});
}

void globalWithdrawn(void*, wl_registry*, std::uint32_t) {}

constexpr wl_registry_listener globalsListener{.global = globalOffered,
                                               .global_remove = globalWithdrawn};

} // namespace

wl_display* waylandDisplay() {
    if (!QGuiApplication::platformName().startsWith(QLatin1String("wayland"))) {
        return nullptr;
    }
    return static_cast<wl_display*>(
        QGuiApplication::platformNativeInterface()->nativeResourceForIntegration("wl_display"));
}

void visitGlobals(wl_display* display, wl_event_queue* queue, const Visitor& visit) {
    auto* const wrapper = static_cast<wl_display*>(wl_proxy_create_wrapper(display));
    wl_proxy_set_queue(reinterpret_cast<wl_proxy*>(wrapper), queue);
    wl_registry* const registry = wl_display_get_registry(wrapper);
    wl_proxy_wrapper_destroy(wrapper);
    Visitor visitor = visit;
    wl_registry_add_listener(registry, &globalsListener, &visitor);
    wl_display_roundtrip_queue(display, queue);
    wl_registry_destroy(registry);
}

} // namespace vigilo::platform
