#pragma once

#include "platform/Alerts.h"

#include <deque>

#include <QString>

namespace vigilo::platform {

class ContentView;
class QtWindows;

/// Warnings as small windows in front of the others.
class QtAlerts : public Alerts {
public:
    explicit QtAlerts(QtWindows& windows) : windows_(windows) {}

    void warn(std::string_view message, std::string_view informativeText) override;

private:
    struct Warning {
        QString message;
        QString informativeText;

        bool operator==(const Warning&) const = default;
    };

    void show(const Warning& warning);

    QtWindows& windows_;
    std::deque<Warning> warnings_; ///< the one that is shown, then those that wait
    ContentView* panel_ = nullptr; ///< of the one that is shown
};

} // namespace vigilo::platform
