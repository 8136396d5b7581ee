#pragma once

#include <memory>

#include <QObject>
#include <QPoint>

namespace vigilo::platform {

class ContentView;
class MenuModel;
class QtWindows;

/// A menu in a window of its own, for trays of X11 that leave that to the program. A press beside
/// it closes it. Main thread.
class MenuWindow : public QObject {
public:
    /// `model` outlives it.
    MenuWindow(QtWindows& windows, MenuModel& model);
    ~MenuWindow() override;

    /// Shows it with a corner at a place of the display, inside the display.
    void open(const QPoint& place);

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    MenuModel& model_;
    std::unique_ptr<ContentView> view_;
};

} // namespace vigilo::platform
