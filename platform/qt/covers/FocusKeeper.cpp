#include "platform/qt/covers/FocusKeeper.h"

#include <algorithm>
#include <utility>

#include <QGuiApplication>
#include <QWindow>

namespace vigilo::platform {

namespace {

using namespace std::chrono_literals;

// A change of focus between two windows passes through none.
constexpr auto firstPause = 10ms;
constexpr std::chrono::milliseconds longestPause = 2s;

} // namespace

FocusKeeper::FocusKeeper(std::function<bool()> hasFocus, std::function<void()> regain)
    : hasFocus_(std::move(hasFocus)), regain_(std::move(regain)) {
    timer_.setSingleShot(true);
    QObject::connect(&timer_, &QTimer::timeout, &timer_, [this] {
        if (hasFocus_()) {
            return;
        }
        regain_();
        pause_ = std::min(2 * pause_, longestPause);
        timer_.start(pause_);
    });
    focusChange_ = QObject::connect(qGuiApp, &QGuiApplication::focusWindowChanged, &timer_,
                                    [this] { look(); });
    look();
}

FocusKeeper::~FocusKeeper() {
    QObject::disconnect(focusChange_);
}

void FocusKeeper::lose() {
    // Another program that does the same must not keep the machine busy.
    if (!timer_.isActive()) {
        regain_();
        look();
    }
}

void FocusKeeper::look() {
    // What we do ourselves to regain it is a change, too.
    if (!timer_.isActive()) {
        pause_ = firstPause;
        timer_.start(pause_);
    }
}

} // namespace vigilo::platform
