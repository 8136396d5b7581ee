// The actions of AwakeController that combine a session with a way of hiding the screen.
#include "core/AwakeController.h"

#include <chrono>

namespace vigilo {

namespace {
using namespace std::chrono_literals;

/// Long enough for the caller to take its windows down before the displays go dark.
constexpr auto systemLockDelay = 350ms;
} // namespace

void AwakeController::agentLock(std::optional<std::int64_t> minutes) {
    if (begin(minutes, AwakeMode::agentLock) && isActive()) {
        fire(onAgentLockRequested);
    }
}

void AwakeController::appleLock(std::optional<std::int64_t> minutes) {
    if (begin(minutes, AwakeMode::appleLock) && isActive()) {
        activateAppleLockScreen();
    }
}

void AwakeController::showAgentLockPreservingSession() {
    if (!isActive() && !begin(std::nullopt, AwakeMode::agentLock)) {
        return;
    }
    if (isActive()) {
        activeMode_ = AwakeMode::agentLock;
        fire(onStateChange);
        fire(onAgentLockRequested);
    }
}

void AwakeController::useAppleLockPreservingSession() {
    if (!isActive() && !begin(std::nullopt, AwakeMode::appleLock)) {
        return;
    }
    if (isActive()) {
        activeMode_ = AwakeMode::appleLock;
        fire(onStateChange);
        activateAppleLockScreen();
    }
}

void AwakeController::lockScreenNow() {
    activateAppleLockScreen();
}

void AwakeController::openLockSettings() {
    environment_.workspace.openLockScreenSettings();
}

void AwakeController::activateAppleLockScreen() {
    // Not tied to the controller: a lock once asked for comes, whatever happens to the session.
    environment_.runLoop.runAfter(
        systemLockDelay, [&systemLock = environment_.systemLock] { systemLock.sleepDisplays(); });
}

} // namespace vigilo
