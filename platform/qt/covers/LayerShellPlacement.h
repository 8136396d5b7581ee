#pragma once

#include "platform/qt/covers/CoverPlacement.h"
#include "platform/qt/covers/FocusKeeper.h"

#include <cstdint>
#include <memory>
#include <optional>

#include <QObject>
#include <QSize>

struct wl_buffer;
struct wl_surface;
struct zwlr_layer_surface_v1;
struct zwp_keyboard_shortcuts_inhibitor_v1;

namespace vigilo::platform {

class KWinEffects;
class LayerShell;
class UnmanagedWatch;

/// A surface on the compositor's overlay layer, which is above every window and panel.
class LayerShellPlacement : public CoverPlacement {
public:
    /// None where the compositor has no such layers or will not let the window onto one.
    static std::unique_ptr<CoverPlacement> make(QQuickView& view, QScreen& screen);

    ~LayerShellPlacement() override;

    void show() override;
    void takeKeyboard() override;

private:
    LayerShellPlacement(QQuickView& view, std::shared_ptr<LayerShell> shell);

    bool takeLayer(QScreen& screen);
    wl_surface* surface() const;
    void paintGround();
    void dropGround();
    void stayOnTop();
    void setKeyboard(std::uint32_t mode);
    void regainKeyboard();
    void inhibitShortcuts();

    static void configure(void* data, zwlr_layer_surface_v1* layerSurface, std::uint32_t serial,
                          std::uint32_t width, std::uint32_t height);

    QQuickView& view_;
    std::shared_ptr<LayerShell> shell_;
    zwlr_layer_surface_v1* layerSurface_ = nullptr;
    zwp_keyboard_shortcuts_inhibitor_v1* inhibitor_ = nullptr;
    wl_buffer* ground_ = nullptr; ///< for as long as the compositor may read it
    bool isConfigured_ = false;
    QSize size_; ///< in the compositor's units; empty until it asks for one
    std::optional<FocusKeeper> focusKeeper_; ///< of the one with the keyboard
    std::shared_ptr<KWinEffects> effects_;
    std::shared_ptr<UnmanagedWatch> unmanaged_;
    QObject listener_; ///< to what that tells
};

} // namespace vigilo::platform
