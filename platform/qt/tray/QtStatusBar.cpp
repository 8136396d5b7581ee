#include "platform/qt/tray/QtStatusBar.h"

#include "platform/linux/bus/SessionBus.h"
#include "platform/qt/tray/QtStatusItem.h"

#include <utility>

namespace vigilo::platform {

QtStatusBar::QtStatusBar(QtWindows& windows, SessionBus& bus,
                         std::function<void(const std::string&)> onActivationToken)
    : windows_(windows), bus_(bus),
      hostQuestion_(StatusNotifierWatcher::askForHost(bus_.connection())),
      onActivationToken_(std::move(onActivationToken)) {}

std::unique_ptr<StatusItem> QtStatusBar::makeStatusItem(StatusItemSpec spec) {
    return std::make_unique<QtStatusItem>(std::move(spec), windows_, bus_,
                                          StatusNotifierWatcher::isHosted(hostQuestion_),
                                          onActivationToken_);
}

} // namespace vigilo::platform
