#include "platform/qt/covers/LayerShellPlacement.h"

#include "platform/linux/FileDescriptor.h"
#include "platform/qt/covers/KWinEffects.h"
#include "platform/qt/covers/LayerShell.h"
#include "platform/qt/covers/UnmanagedWatch.h"

#include <utility>

#include <QGuiApplication>
#include <QQuickView>
#include <QScreen>
#include <QtMath>
#include <private/qhighdpiscaling_p.h>
#include <qpa/qplatformnativeinterface.h>
#include <qpa/qplatformwindow.h>

#include <keyboard-shortcuts-inhibit.h>
#include <sys/mman.h>
#include <unistd.h>
#include <wayland-client.h>
#include <wlr-layer-shell.h>

namespace vigilo::platform {

namespace {

// Values of the protocol.
constexpr std::uint32_t overlayLayer = 3;
constexpr std::uint32_t allEdges = 1 | 2 | 4 | 8;
constexpr std::int32_t ignoreOthersZones = -1;
constexpr std::uint32_t noKeyboard = 0;
constexpr std::uint32_t exclusiveKeyboard = 1;

QPlatformNativeInterface* native() {
    return QGuiApplication::platformNativeInterface();
}

/// A compositor that only passes on somebody's wish would show what is below if the layer went. One
/// whose output is gone ignores what stays of it, until the displays are covered anew: the toolkit
/// hears of that, too.
void stay(void*, zwlr_layer_surface_v1*) {}

} // namespace

std::unique_ptr<CoverPlacement> LayerShellPlacement::make(QQuickView& view, QScreen& screen) {
    auto shell = LayerShell::connect();
    if (!shell) {
        return nullptr;
    }
    std::unique_ptr<LayerShellPlacement> placement(new LayerShellPlacement(view, std::move(shell)));
    if (!placement->takeLayer(screen)) {
        // Its surface has the layer's role for good, and may have no other.
        placement.reset();
        view.destroy();
        return nullptr;
    }
    return placement;
}

LayerShellPlacement::LayerShellPlacement(QQuickView& view, std::shared_ptr<LayerShell> shell)
    : view_(view), shell_(std::move(shell)) {}

LayerShellPlacement::~LayerShellPlacement() {
    dropGround();
    if (inhibitor_ != nullptr) {
        zwp_keyboard_shortcuts_inhibitor_v1_destroy(inhibitor_);
    }
    if (layerSurface_ != nullptr) {
        zwlr_layer_surface_v1_destroy(layerSurface_);
    }
}

/// The toolkit gives a surface with this flag no role, so that it can have the layer's; the role
/// has to be configured before anything is drawn.
bool LayerShellPlacement::takeLayer(QScreen& screen) {
    view_.setFlags(Qt::Window | Qt::FramelessWindowHint | Qt::BypassWindowManagerHint);
    view_.setScreen(&screen);
    view_.setGeometry(screen.geometry());
    view_.create();
    auto* const output =
        static_cast<wl_output*>(native()->nativeResourceForScreen("output", &screen));
    if (surface() == nullptr || output == nullptr) {
        return false;
    }
    static constexpr zwlr_layer_surface_v1_listener listener{.configure = configure,
                                                             .closed = stay};
    layerSurface_ = zwlr_layer_shell_v1_get_layer_surface(shell_->shell, surface(), output,
                                                          overlayLayer, "vigilo");
    zwlr_layer_surface_v1_add_listener(layerSurface_, &listener, this);
    zwlr_layer_surface_v1_set_size(layerSurface_, 0, 0);
    zwlr_layer_surface_v1_set_anchor(layerSurface_, allEdges);
    zwlr_layer_surface_v1_set_exclusive_zone(layerSurface_, ignoreOthersZones);
    wl_surface_commit(surface());
    wl_display_roundtrip_queue(shell_->display, shell_->queue);
    // What comes later comes with the toolkit's own events.
    wl_proxy_set_queue(reinterpret_cast<wl_proxy*>(layerSurface_), nullptr);
    return isConfigured_;
}

void LayerShellPlacement::show() {
    view_.show();
    paintGround();
    if (shell_->isKWin) {
        effects_ = KWinEffects::suspend();
        stayOnTop();
    }
}

/// KWin raises what it gives the keyboard, which is all that raises a surface within its layer.
void LayerShellPlacement::stayOnTop() {
    unmanaged_ = UnmanagedWatch::begin();
    if (!unmanaged_) {
        return;
    }
    QObject::connect(unmanaged_.get(), &UnmanagedWatch::mayOvertake, &listener_, [this] {
        if (!focusKeeper_) {
            setKeyboard(exclusiveKeyboard);
            setKeyboard(noKeyboard);
        }
    });
    QObject::connect(unmanaged_.get(), &UnmanagedWatch::wereRaised, &listener_, [this] {
        if (focusKeeper_) {
            regainKeyboard();
        }
    });
}

/// Hides the display at once, in black: the toolkit draws its first picture some milliseconds
/// later, and those of several displays one after another.
void LayerShellPlacement::paintGround() {
    constexpr int bytesPerPixel = 4;
    const int scale = qCeil(view_.handle()->devicePixelRatio());
    const QSize size = scale * size_;
    const int stride = size.width() * bytesPerPixel;
    const int length = stride * size.height();
    // All of it is 0 until somebody writes to it.
    const FileDescriptor file(memfd_create("vigilo-ground", MFD_CLOEXEC));
    if (size.isEmpty() || shell_->memory == nullptr || surface() == nullptr || !file ||
        ftruncate(file.number(), length) != 0) {
        return;
    }
    wl_shm_pool* const pool = wl_shm_create_pool(shell_->memory, file.number(), length);
    ground_ = wl_shm_pool_create_buffer(pool, 0, size.width(), size.height(), stride,
                                        WL_SHM_FORMAT_XRGB8888);
    wl_shm_pool_destroy(pool);
    wl_proxy_set_queue(reinterpret_cast<wl_proxy*>(ground_), nullptr);
    static constexpr wl_buffer_listener listener{.release = [](void* data, wl_buffer*) {
        static_cast<LayerShellPlacement*>(data)->dropGround();
    }};
    wl_buffer_add_listener(ground_, &listener, this);
    wl_surface_attach(surface(), ground_, 0, 0);
    wl_surface_damage(surface(), 0, 0, size_.width(), size_.height());
    wl_surface_commit(surface());
    wl_display_flush(shell_->display);
}

void LayerShellPlacement::dropGround() {
    if (ground_ != nullptr) {
        wl_buffer_destroy(std::exchange(ground_, nullptr));
    }
}

void LayerShellPlacement::takeKeyboard() {
    setKeyboard(exclusiveKeyboard);
    inhibitShortcuts();
    focusKeeper_.emplace([] { return isCover(QGuiApplication::focusWindow()); },
                         [this] { regainKeyboard(); });
}

void LayerShellPlacement::regainKeyboard() {
    // Only a change makes the compositor look at it again.
    setKeyboard(noKeyboard);
    setKeyboard(exclusiveKeyboard);
}

wl_surface* LayerShellPlacement::surface() const {
    return static_cast<wl_surface*>(native()->nativeResourceForWindow("surface", &view_));
}

void LayerShellPlacement::setKeyboard(std::uint32_t mode) {
    if (surface() != nullptr) {
        zwlr_layer_surface_v1_set_keyboard_interactivity(layerSurface_, mode);
        wl_surface_commit(surface());
        wl_display_flush(shell_->display);
    }
}

void LayerShellPlacement::inhibitShortcuts() {
    auto* const seat = static_cast<wl_seat*>(native()->nativeResourceForIntegration("wl_seat"));
    if (inhibitor_ == nullptr && shell_->shortcuts != nullptr && seat != nullptr) {
        inhibitor_ = zwp_keyboard_shortcuts_inhibit_manager_v1_inhibit_shortcuts(shell_->shortcuts,
                                                                                 surface(), seat);
    }
}

void LayerShellPlacement::configure(void* data, zwlr_layer_surface_v1* layerSurface,
                                    std::uint32_t serial, std::uint32_t width,
                                    std::uint32_t height) {
    auto& placement = *static_cast<LayerShellPlacement*>(data);
    zwlr_layer_surface_v1_ack_configure(layerSurface, serial);
    placement.isConfigured_ = true;
    if (width > 0 && height > 0) {
        placement.size_ = QSize(static_cast<int>(width), static_cast<int>(height));
        // The toolkit may be told to draw larger than the compositor asks for.
        placement.view_.resize(QHighDpi::fromNativePixels(placement.size_, &placement.view_));
    }
}

} // namespace vigilo::platform
