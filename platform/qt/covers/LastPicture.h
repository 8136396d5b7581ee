#pragma once

#include <chrono>
#include <functional>

#include <QObject>
#include <QTimer>

class QWindow;

namespace vigilo::platform {

/// Waits until no picture of a window is on its way to the display, on Wayland, where the toolkit
/// keeps requests for an update back until then. The window draws nothing meanwhile, nor hears that
/// it has to. Main thread.
class LastPicture : public QObject {
public:
    /// A window that can be seen goes long before; a busy compositor was seen to need half of it
    /// for a picture.
    static constexpr std::chrono::milliseconds longest{2000};

    /// `then` is called once, unless this is destroyed before; it may destroy this. It is not
    /// waited for longer than `limit`: a compositor need not show a window.
    LastPicture(QWindow& window, std::function<void()> then,
                std::chrono::milliseconds limit = longest, QObject* parent = nullptr);

protected:
    bool eventFilter(QObject*, QEvent* event) override;

private:
    void end();

    QWindow& window_;
    std::function<void()> then_;
    QTimer timer_;
    bool isExposed_;
    bool cameOnce_ = false;
};

} // namespace vigilo::platform
