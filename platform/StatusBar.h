#pragma once

#include "platform/Menu.h"

#include <functional>
#include <memory>
#include <string>
#include <string_view>

namespace vigilo::platform {

/// The picture of a status item: a symbol that takes the colour of the panel it stands on.
struct StatusImage {
    std::string symbol;
    std::string accessibilityDescription;
    double pointSize =
        0; ///< the symbol's height at scale 1; panels with a size of their own use that

    bool operator==(const StatusImage&) const = default;
};

/// The program's place in the desktop's panel. Setting what is set already costs nothing.
/// Destroying it removes it. Main thread.
class StatusItem {
public:
    virtual ~StatusItem() = default;

    virtual void setMenu(const Menu& menu) = 0;
    virtual void setImage(const StatusImage& image) = 0;
    virtual void setToolTip(std::string_view text) = 0;
};

/// What a status item is to be, before it is made.
struct StatusItemSpec {
    double length = 0;      ///< points along the panel, where the panel leaves that to items
    MenuRequests menu = {}; ///< of the menu it shows
    std::function<void()>
        onPressed; ///< pressed itself, where the panel does not open the menu then
};

/// The part of the desktop's panel where running programs show themselves.
class StatusBar {
public:
    virtual ~StatusBar() = default;

    /// Makes an item. It is shown as soon as there is a panel, and again whenever a panel comes.
    virtual std::unique_ptr<StatusItem> makeStatusItem(StatusItemSpec spec) = 0;
};

} // namespace vigilo::platform
