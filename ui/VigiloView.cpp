#include "ui/VigiloView.h"

#include "core/DurationScale.h"
#include "ui/DurationMenu.h"

#include <algorithm>
#include <cstddef>
#include <optional>
#include <string_view>
#include <utility>

#include <QMetaObject>

namespace vigilo {

namespace {

QString text(std::string_view utf8) {
    return QString::fromUtf8(utf8);
}

QString agentCountText(std::size_t count) {
    if (count == 0) {
        return QStringLiteral("Watching for Claude Code and Codex");
    }
    return QString::number(count) + QStringLiteral(" agent process") +
           (count == 1 ? QString() : QStringLiteral("es")) + QStringLiteral(" detected");
}

} // namespace

VigiloView::VigiloView(std::shared_ptr<AwakeController> controller)
    : controller_(std::move(controller)),
      selectedMinutes_(static_cast<double>(DurationScale::untilStoppedMinutes)), shown_(read()),
      observation_(controller_->objectWillChange([this] { readLater(); })) {}

VigiloView::Shown VigiloView::read() const {
    return {.isActive = controller_->isActive(),
            .statusText = controller_->isActive()
                              ? text(controller_->remainingLabel())
                              : agentCountText(controller_->agentSessions().size()),
            .activeMode = controller_->activeMode()};
}

void VigiloView::readLater() {
    // A change is announced before it is made and rarely comes alone: read once, afterwards.
    if (!std::exchange(willRead_, true)) {
        QMetaObject::invokeMethod(this, &VigiloView::readAgain, Qt::QueuedConnection);
    }
}

void VigiloView::readAgain() {
    willRead_ = false;
    const Shown before = std::exchange(shown_, read());
    if (shown_.isActive != before.isActive) {
        Q_EMIT isActiveChanged();
    }
    if (shown_.statusText != before.statusText) {
        Q_EMIT statusTextChanged();
    }
    if (shown_.activeMode != before.activeMode) {
        Q_EMIT activeModeChanged();
    }
}

void VigiloView::selectMinutes(double minutes) {
    if (minutes != selectedMinutes_) {
        selectedMinutes_ = minutes;
        Q_EMIT durationChanged();
    }
}

void VigiloView::selectScreenMode(AwakeMode mode) {
    if (mode != selectedScreenMode_) {
        selectedScreenMode_ = mode;
        Q_EMIT modeChanged();
    }
}

void VigiloView::pressAction() {
    if (controller_->isActive()) {
        controller_->stop();
        return;
    }
    std::optional<std::int64_t> minutes;
    if (!(selectedMinutes_ >= static_cast<double>(DurationScale::untilStoppedMinutes))) {
        minutes = wholeMinutes(selectedMinutes_);
    }
    switch (selectedScreenMode_) {
    case AwakeMode::visible:
        controller_->start(minutes, AwakeMode::visible);
        break;
    case AwakeMode::agentLock:
        controller_->agentLock(minutes);
        break;
    case AwakeMode::appleLock:
        controller_->appleLock(minutes);
        break;
    }
}

void VigiloView::chooseDuration(int index) {
    if (index >= 0 && static_cast<std::size_t>(index) < durationPresets.size()) {
        selectMinutes(durationPresets[static_cast<std::size_t>(index)].minutes);
    }
}

void VigiloView::chooseMode(int index) {
    if (index >= 0 && static_cast<std::size_t>(index) < allAwakeModes.size()) {
        selectScreenMode(allAwakeModes[static_cast<std::size_t>(index)]);
    }
}

QString VigiloView::pillText() const {
    return isActive() ? QStringLiteral("KEEPING AWAKE") : QStringLiteral("NORMAL SLEEP");
}

QString VigiloView::heroSymbol() const {
    return isActive() ? QStringLiteral("checkmark.circle.fill") : QStringLiteral("moon.stars.fill");
}

QString VigiloView::headline() const {
    return isActive() ? QStringLiteral("This Mac is staying awake")
                      : QStringLiteral("Keep this Mac awake");
}

QString VigiloView::actionTitle() const {
    return isActive() ? QStringLiteral("End Awake Session") : QStringLiteral("Start Awake Session");
}

QString VigiloView::actionSymbol() const {
    return isActive() ? QStringLiteral("stop.fill") : QStringLiteral("play.fill");
}

QString VigiloView::activeModeTitle() const {
    return text(title(shown_.activeMode));
}

QString VigiloView::activeModeSymbol() const {
    return text(icon(shown_.activeMode));
}

QString VigiloView::durationText() const {
    return text(durationLabel(selectedMinutes_));
}

QList<QString> VigiloView::durationRows() {
    QList<QString> rows;
    for (const DurationPreset& preset : durationPresets) {
        rows << text(preset.menuLabel);
    }
    return rows;
}

int VigiloView::durationIndex() const {
    const auto found = std::find_if(
        durationPresets.begin(), durationPresets.end(),
        [this](const DurationPreset& preset) { return preset.minutes == selectedMinutes_; });
    return found == durationPresets.end() ? -1 : static_cast<int>(found - durationPresets.begin());
}

QString VigiloView::modeTitle() const {
    return text(title(selectedScreenMode_));
}

QString VigiloView::modeSymbol() const {
    return text(icon(selectedScreenMode_));
}

QList<QString> VigiloView::modeRows() {
    QList<QString> rows;
    for (const AwakeMode mode : allAwakeModes) {
        rows << text(title(mode));
    }
    return rows;
}

QList<QString> VigiloView::modeRowSymbols() {
    QList<QString> symbols;
    for (const AwakeMode mode : allAwakeModes) {
        symbols << text(icon(mode));
    }
    return symbols;
}

int VigiloView::modeIndex() const {
    const auto* const found =
        std::find(allAwakeModes.begin(), allAwakeModes.end(), selectedScreenMode_);
    return static_cast<int>(found - allAwakeModes.begin());
}

} // namespace vigilo
