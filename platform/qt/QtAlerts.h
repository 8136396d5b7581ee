#pragma once

#include "platform/Alerts.h"

namespace vigilo::platform {

/// Warnings as message boxes of the toolkit.
class QtAlerts : public Alerts {
public:
    void warn(std::string_view message, std::string_view informativeText) override;
};

} // namespace vigilo::platform
