#pragma once

#include "platform/Menu.h"
#include "platform/linux/tray/MenuTypes.h"

#include <optional>

namespace vigilo::platform {

/// A menu item as the properties of a line of com.canonical.dbusmenu; those that have the value
/// that is assumed anyway are left out.
QVariantMap menuProperties(const MenuItem& item);

/// The properties of these names only; all when there are none.
QVariantMap chosenProperties(const QVariantMap& properties, const QStringList& names);

/// What has to be told of a line when its properties change.
struct PropertyChange {
    QVariantMap updated;
    QStringList removed;
};

/// None when nothing differs.
std::optional<PropertyChange> propertyChange(const QVariantMap& before, const QVariantMap& after);

} // namespace vigilo::platform
