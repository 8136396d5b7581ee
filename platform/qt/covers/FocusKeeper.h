#pragma once

#include <chrono>
#include <functional>

#include <QMetaObject>
#include <QTimer>

namespace vigilo::platform {

/// Gets the focus back whenever a cover loses it, for as long as this lives. Main thread.
class FocusKeeper {
public:
    /// `regain` asks the display server for the focus; it is called when `hasFocus` says no, at
    /// first and after every change of the focus. As long as that changes nothing it is called
    /// again, ever more rarely: there may be no keyboard at all.
    FocusKeeper(std::function<bool()> hasFocus, std::function<void()> regain);
    ~FocusKeeper();
    FocusKeeper(const FocusKeeper&) = delete;
    FocusKeeper& operator=(const FocusKeeper&) = delete;

    /// For whoever hears of the loss before the toolkit tells: regains at once, unless it has just
    /// done so.
    void lose();

    /// For whoever hears of a change that the toolkit does not: looks whether the focus is there,
    /// in a moment.
    void look();

private:
    std::function<bool()> hasFocus_;
    std::function<void()> regain_;
    std::chrono::milliseconds pause_{};
    QTimer timer_;
    QMetaObject::Connection focusChange_;
};

} // namespace vigilo::platform
