#pragma once

#include "platform/Windows.h"
#include "platform/qt/covers/LastPicture.h"

#include <functional>
#include <memory>
#include <string>

#include <QQuickView>

namespace vigilo::platform {

/// A view of one of our QML types; it never closes by itself.
class ContentView : public QQuickView {
public:
    /// `onCloseRequested` is called when somebody wants it closed; null to have it hide then.
    ContentView(QQmlEngine& engine, const Colour& background,
                std::function<void()> onCloseRequested);

    /// Makes what it shows, once; `content` and `model` as in WindowSpec. Content that cannot be
    /// made stops the process.
    void load(const std::string& content, QObject* model);

    /// Destroys all that it shows, for good.
    void unload();

    /// Takes the size that its content wants, as far as there is room on its display.
    void fitToContent();

    /// Shows it, in the middle of its display if it is hidden, and asks for the keyboard.
    void showInFront();

    /// Hides it unless it is shown again before: on Wayland when its last picture was shown, for
    /// the reason that leaveDisplay() gives, or after two seconds.
    void hideSoon();

    /// Lets it be shown if it is about to be hidden.
    void stayShown();

protected:
    bool event(QEvent* event) override;

    /// A key that makes something else take the keyboard is meant for that: whoever types on the
    /// lock screen has the prompt begin with what was typed.
    void keyPressEvent(QKeyEvent* event) override;

private:
    void stopHiding();

    std::function<void()> onCloseRequested_;
    std::unique_ptr<LastPicture> lastPicture_; ///< while it is about to be hidden
};

} // namespace vigilo::platform
