#pragma once

#include <QRasterWindow>
#include <QString>
#include <QTimer>

namespace vigilo::platform {

/// A line of text that shows while the pointer rests on an icon of ours.
class IconToolTip : public QRasterWindow {
public:
    IconToolTip();

    void setText(const QString& text);

    /// Shows it in a moment, beside an icon that takes this place on the display.
    void showSoon(const QRect& icon);
    void hideNow();

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    void showBeside();

    QString text_;
    QRect icon_;
    QTimer delay_;
};

} // namespace vigilo::platform
