#pragma once

#include <memory>

class QWindow;
struct gtk_shell1;
struct wl_display;

namespace vigilo::platform {

/// What Mutter offers to the windows of GNOME's toolkit, and grants also against a window that has
/// just opened. Over the toolkit's own connection. Main thread.
class GtkShell {
public:
    /// None on another compositor.
    static std::unique_ptr<GtkShell> connect();
    ~GtkShell();
    GtkShell(const GtkShell&) = delete;
    GtkShell& operator=(const GtkShell&) = delete;

    /// Raises a window that is shown above all others, shows its workspace and gives it the focus.
    void present(QWindow& window) const;

private:
    GtkShell() = default;

    wl_display* display_ = nullptr;
    gtk_shell1* shell_ = nullptr;
};

} // namespace vigilo::platform
