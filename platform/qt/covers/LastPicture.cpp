#include "platform/qt/covers/LastPicture.h"

#include <utility>

#include <QEvent>
#include <QWindow>

namespace vigilo::platform {

LastPicture::LastPicture(QWindow& window, std::function<void()> then,
                         std::chrono::milliseconds limit, QObject* parent)
    : QObject(parent), window_(window), then_(std::move(then)), isExposed_(window.isExposed()) {
    timer_.setSingleShot(true);
    timer_.callOnTimeout(this, &LastPicture::end);
    timer_.start(limit);
    window.installEventFilter(this);
    window.requestUpdate();
}

bool LastPicture::eventFilter(QObject*, QEvent* event) {
    if (!then_) {
        return false;
    }
    if (event->type() == QEvent::Expose) {
        // The toolkit takes a window for hidden while the news of a picture is long in coming, and
        // for shown again with the news, but does not deliver the request then. Nor is it done with
        // the window before this event is.
        if (!std::exchange(isExposed_, window_.isExposed()) && isExposed_) {
            timer_.start(0);
        }
        return true;
    }
    if (event->type() == QEvent::UpdateRequest) {
        // The first may be late news of the picture before, when the last was not asked for.
        if (std::exchange(cameOnce_, true)) {
            end();
        } else {
            window_.requestUpdate();
        }
        return true;
    }
    return event->type() == QEvent::Paint;
}

void LastPicture::end() {
    timer_.stop();
    std::exchange(then_, nullptr)();
}

} // namespace vigilo::platform
