#include "platform/linux/power/InhibitMeans.h"

#include "platform/Fatal.h"

#include <algorithm>

namespace vigilo::platform {

std::string_view serviceName(InhibitMeans means) {
    switch (means) {
    case InhibitMeans::plasma:
        return "org.kde.Solid.PowerManagement.PolicyAgent";
    case InhibitMeans::sessionManager:
        return "org.gnome.SessionManager";
    case InhibitMeans::powerManager:
        return "org.freedesktop.PowerManagement";
    case InhibitMeans::logind:
        return "org.freedesktop.login1";
    case InhibitMeans::portal:
        return "org.freedesktop.portal.Desktop";
    }
    fatal("an InhibitMeans outside its enumeration");
}

std::vector<InhibitMeans> chooseInhibitMeans(const std::vector<std::string>& ownedNames) {
    const auto isOwned = [&](InhibitMeans means) {
        return std::find(ownedNames.begin(), ownedNames.end(), serviceName(means)) !=
               ownedNames.end();
    };
    if (isOwned(InhibitMeans::plasma)) {
        return {InhibitMeans::plasma};
    }
    if (isOwned(InhibitMeans::sessionManager)) {
        return {InhibitMeans::sessionManager, InhibitMeans::logind};
    }
    if (isOwned(InhibitMeans::powerManager)) {
        return {InhibitMeans::powerManager, InhibitMeans::logind};
    }
    return {InhibitMeans::logind};
}

} // namespace vigilo::platform
