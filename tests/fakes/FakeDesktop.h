#pragma once

#include "platform/Alerts.h"
#include "platform/SystemLock.h"
#include "platform/Workspace.h"

#include <functional>
#include <string>
#include <string_view>
#include <vector>

namespace vigilo::fakes {

class FakeAlerts : public platform::Alerts {
public:
    struct Alert {
        std::string message;
        std::string informativeText;

        bool operator==(const Alert&) const = default;
    };

    void warn(std::string_view message, std::string_view informativeText) override {
        shown.push_back({std::string(message), std::string(informativeText)});
        if (onShown) {
            onShown();
        }
    }

    std::vector<Alert> shown;
    std::function<void()> onShown; ///< what happens while the alert is up
};

class FakeSystemLock : public platform::SystemLock {
public:
    void sleepDisplays() override {
        ++requests;
        if (onRequest) {
            onRequest();
        }
    }

    int requests = 0;
    std::function<void()> onRequest;
};

class FakeWorkspace : public platform::Workspace {
public:
    void openLockScreenSettings() override { ++lockScreenSettingsOpened; }

    int lockScreenSettingsOpened = 0;
};

} // namespace vigilo::fakes
