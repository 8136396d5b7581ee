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
    start(minutes, AwakeMode::agentLock);
    if (isActive()) {
        fire(onAgentLockRequested);
    }
}

void AwakeController::appleLock(std::optional<std::int64_t> minutes) {
    start(minutes, AwakeMode::appleLock);
    if (isActive()) {
        activateAppleLockScreen();
    }
}

void AwakeController::showAgentLockPreservingSession() {
    if (!isActive()) {
        start(std::nullopt, AwakeMode::agentLock);
    }
    if (isActive()) {
        activeMode_ = AwakeMode::agentLock;
        fire(onStateChange);
        fire(onAgentLockRequested);
    }
}

void AwakeController::useAppleLockPreservingSession() {
    if (!isActive()) {
        start(std::nullopt, AwakeMode::appleLock);
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
