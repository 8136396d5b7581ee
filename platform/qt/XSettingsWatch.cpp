#include "platform/qt/XSettingsWatch.h"

#include <cstdint>
#include <string>
#include <utility>

namespace vigilo::platform {

namespace {

// Much more than desktops have to say.
constexpr std::uint32_t mostBytes = 256 * 1024;

} // namespace

XSettingsWatch::XSettingsWatch(std::function<void(const XSettings&)> onSettings)
    : onSettings_(std::move(onSettings)) {
    if (ManagerSelection::isPossible()) {
        selection_.emplace("_XSETTINGS_S0", "_XSETTINGS_SETTINGS", [this] { tell(); });
    }
    tell();
}

void XSettingsWatch::tell() const {
    // The property's type has its name.
    const std::string bytes =
        selection_ ? selection_->property(selection_->propertyName(), mostBytes) : std::string();
    onSettings_(parseXSettings(bytes));
}

} // namespace vigilo::platform
