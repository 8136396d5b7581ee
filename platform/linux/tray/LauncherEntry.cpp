#include "platform/linux/tray/LauncherEntry.h"

#include <utility>

#include <QDBusMessage>
#include <QLatin1StringView>

namespace vigilo::platform {

namespace {
constexpr QLatin1StringView entryPath("/io/github/vigilo/Vigilo/LauncherEntry");
constexpr QLatin1StringView menuPath("/io/github/vigilo/Vigilo/DockMenu");
} // namespace

LauncherEntry::LauncherEntry(QDBusConnection bus, MenuRequests requests)
    : bus_(std::move(bus)), menu_(bus_, menuPath, std::move(requests)) {
    new LauncherEntryAdaptor(*this);
    bus_.registerObject(entryPath, this, QDBusConnection::ExportAdaptors);
}

LauncherEntry::~LauncherEntry() {
    bus_.unregisterObject(entryPath);
}

void LauncherEntry::setMenu(const Menu& menu) {
    menu_.setMenu(menu);
    if (!std::exchange(isAnnounced_, true)) {
        announce();
    }
}

/// Docks that come later ask for it.
void LauncherEntry::announce() {
    QDBusMessage update = QDBusMessage::createSignal(
        entryPath, QStringLiteral("com.canonical.Unity.LauncherEntry"), QStringLiteral("Update"));
    update << application() << properties();
    bus_.send(update);
}

QString LauncherEntry::application() const {
    return QStringLiteral("application://io.github.vigilo.Vigilo.desktop");
}

QVariantMap LauncherEntry::properties() const {
    return {{QStringLiteral("quicklist"), menu_.path()}};
}

LauncherEntryAdaptor::LauncherEntryAdaptor(LauncherEntry& entry)
    : QDBusAbstractAdaptor(&entry), entry_(entry) {}

QString LauncherEntryAdaptor::Query(QVariantMap& properties) {
    properties = entry_.properties();
    return entry_.application();
}

} // namespace vigilo::platform
