#include "platform/qt/tray/EmbeddedIcon.h"

#include "platform/qt/tray/StatusPicture.h"

#include <algorithm>
#include <utility>

#include <QMouseEvent>
#include <QPainter>

namespace vigilo::platform {

namespace {
constexpr int preferredSide = 22;
} // namespace

class EmbeddedIcon::IconWindow : public QRasterWindow {
public:
    IconWindow(EmbeddedIcon& icon, bool isTranslucent) : icon_(icon) {
        setFlags(Qt::FramelessWindowHint | Qt::X11BypassWindowManagerHint);
        QSurfaceFormat format;
        format.setAlphaBufferSize(isTranslucent ? 8 : 0);
        setFormat(format);
        resize(preferredSide, preferredSide);
        create();
        // The tray reads the hint, which is written to a window that is there already.
        setMinimumSize(QSize(preferredSide, preferredSide));
    }

protected:
    void paintEvent(QPaintEvent*) override {
        QPainter painter(this);
        const QRect area(QPoint(), size());
        painter.setCompositionMode(QPainter::CompositionMode_Source);
        const QColor behind = ground();
        painter.fillRect(area, behind);
        painter.setCompositionMode(QPainter::CompositionMode_SourceOver);
        const double scale = devicePixelRatio();
        const int side = std::min(width(), height());
        QImage picture =
            statusPicture(icon_.symbol_, static_cast<int>(side * scale), shade(behind));
        picture.setDevicePixelRatio(scale);
        painter.drawImage(QPointF((width() - side) / 2.0, (height() - side) / 2.0), picture);
    }

    void mousePressEvent(QMouseEvent* event) override {
        icon_.toolTip_.hideNow();
        if (event->button() == Qt::LeftButton) {
            icon_.requests_.onPressed();
        } else if (event->button() == Qt::RightButton) {
            icon_.requests_.onMenuWanted(event->globalPosition().toPoint());
        }
    }

    bool event(QEvent* event) override {
        if (event->type() == QEvent::Enter) {
            icon_.toolTip_.showSoon(QRect(mapToGlobal(QPoint()), size()));
        } else if (event->type() == QEvent::Leave) {
            icon_.toolTip_.hideNow();
        }
        return QRasterWindow::event(event);
    }

private:
    QColor ground() const {
        return requestedFormat().hasAlpha()
                   ? QColor(Qt::transparent)
                   : TrayManager::colourBehind(static_cast<std::uint32_t>(winId()));
    }

    /// As the tray says, else as it looks; one that lets the desktop through is taken for dark.
    PanelShade shade(const QColor& behind) const {
        if (const auto foreground = icon_.manager_.foreground()) {
            return shadeOf(*foreground) == PanelShade::dark ? PanelShade::light : PanelShade::dark;
        }
        return requestedFormat().hasAlpha() ? PanelShade::dark : shadeOf(behind);
    }

    EmbeddedIcon& icon_;
};

EmbeddedIcon::EmbeddedIcon(Requests requests)
    : requests_(std::move(requests)), manager_([this] { makeWindow(); }) {
    makeWindow();
}

EmbeddedIcon::~EmbeddedIcon() = default;

void EmbeddedIcon::makeWindow() {
    toolTip_.hideNow();
    window_.reset();
    if (manager_.isPresent()) {
        window_ = std::make_unique<IconWindow>(*this, manager_.isTranslucent());
        window_->setTitle(toolTipText_);
        // The tray shows it. Shown before, it would be seen on the desktop for a moment, and some
        // trays would take the change of its parent for a wish to be hidden.
        manager_.dock(static_cast<std::uint32_t>(window_->winId()));
    }
}

void EmbeddedIcon::setSymbol(const QString& symbol) {
    symbol_ = symbol;
    if (window_) {
        window_->update();
    }
}

void EmbeddedIcon::setToolTip(const QString& text) {
    toolTipText_ = text;
    toolTip_.setText(text);
    if (window_) {
        window_->setTitle(text);
    }
}

} // namespace vigilo::platform
