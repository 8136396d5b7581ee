#include "platform/qt/covers/GtkShell.h"

#include "platform/qt/covers/WaylandGlobals.h"

#include <chrono>
#include <cstdint>

#include <QGuiApplication>
#include <QWindow>
#include <qpa/qplatformnativeinterface.h>

#include <gtk-shell.h>
#include <wayland-client.h>

namespace vigilo::platform {

namespace {

// The first with which a surface can be let go.
constexpr std::uint32_t neededVersion = 4;

/// The compositor compares it with that of the user's last deed.
std::uint32_t now() {
    const auto sinceStart = std::chrono::steady_clock::now().time_since_epoch();
    return static_cast<std::uint32_t>(
        std::chrono::duration_cast<std::chrono::milliseconds>(sinceStart).count());
}

} // namespace

std::unique_ptr<GtkShell> GtkShell::connect() {
    wl_display* const display = waylandDisplay();
    if (display == nullptr) {
        return nullptr;
    }
    std::unique_ptr<GtkShell> shell(new GtkShell);
    shell->display_ = display;
    wl_event_queue* const queue = wl_display_create_queue(display);
    visitGlobals(display, queue, [&](const WaylandGlobal& offered) {
        if (offered.interface == gtk_shell1_interface.name && offered.version >= neededVersion) {
            shell->shell_ = offered.bind<gtk_shell1>(gtk_shell1_interface, neededVersion);
        }
    });
    if (shell->shell_ != nullptr) {
        wl_proxy_set_queue(reinterpret_cast<wl_proxy*>(shell->shell_), nullptr);
    }
    wl_event_queue_destroy(queue);
    return shell->shell_ != nullptr ? std::move(shell) : nullptr;
}

GtkShell::~GtkShell() {
    if (shell_ != nullptr) {
        gtk_shell1_destroy(shell_);
    }
}

void GtkShell::present(QWindow& window) const {
    auto* const surface = static_cast<wl_surface*>(
        QGuiApplication::platformNativeInterface()->nativeResourceForWindow("surface", &window));
    if (surface == nullptr) {
        return;
    }
    gtk_surface1* const toPresent = gtk_shell1_get_gtk_surface(shell_, surface);
    gtk_surface1_present(toPresent, now());
    gtk_surface1_release(toPresent);
    wl_display_flush(display_);
}

} // namespace vigilo::platform
