#pragma once

#include "platform/Alerts.h"

namespace vigilo::platform {

class QtWindows;

/// Warnings as small windows in front of the others.
class QtAlerts : public Alerts {
public:
    explicit QtAlerts(QtWindows& windows) : windows_(windows) {}

    void warn(std::string_view message, std::string_view informativeText) override;

private:
    QtWindows& windows_;
};

} // namespace vigilo::platform
