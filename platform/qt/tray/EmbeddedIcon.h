#pragma once

#include "platform/qt/tray/IconToolTip.h"
#include "platform/qt/tray/TrayManager.h"

#include <functional>
#include <memory>

#include <QImage>
#include <QRasterWindow>

namespace vigilo::platform {

/// The status item as a window inside the tray of an X11 panel. Make it on X11 only; it is shown
/// as long as it lives and there is a tray. Main thread.
class EmbeddedIcon {
public:
    struct Requests {
        std::function<void()> onPressed;
        std::function<void(const QPoint& place)> onMenuWanted; ///< in the display's coordinates
    };

    explicit EmbeddedIcon(Requests requests);
    ~EmbeddedIcon();

    void setSymbol(const QString& symbol);
    void setToolTip(const QString& text);

private:
    class IconWindow;

    void makeWindow();

    Requests requests_;
    QString symbol_;
    QString toolTipText_;
    TrayManager manager_;
    IconToolTip toolTip_;
    std::unique_ptr<IconWindow> window_; ///< none while there is no tray
};

} // namespace vigilo::platform
