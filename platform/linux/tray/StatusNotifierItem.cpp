#include "platform/linux/tray/StatusNotifierItem.h"

#include <utility>

#include <QDBusMessage>
#include <QLatin1StringView>
#include <QStandardPaths>

namespace vigilo::platform {

namespace {
/// Where panels look when an item is registered by the name of its connection.
constexpr QLatin1StringView itemPath("/StatusNotifierItem");
} // namespace

StatusNotifierItem::StatusNotifierItem(QDBusConnection bus, const QString& menuPath,
                                       Requests requests)
    : bus_(std::move(bus)), menuPath_(menuPath), requests_(std::move(requests)) {
    registerStatusNotifierTypes();
    new StatusNotifierAdaptor(*this);
    bus_.registerObject(itemPath, this, QDBusConnection::ExportAdaptors);
}

StatusNotifierItem::~StatusNotifierItem() {
    bus_.unregisterObject(itemPath);
}

void StatusNotifierItem::setIcon(const Icon& icon) {
    const bool isSame = icon.name == icon_.name;
    icon_ = icon;
    if (!isSame) {
        send(QStringLiteral("NewIcon"));
    }
}

void StatusNotifierItem::setToolTip(const QString& toolTip) {
    if (toolTip != std::exchange(toolTip_, toolTip)) {
        send(QStringLiteral("NewToolTip"));
    }
}

void StatusNotifierItem::press() const {
    requests_.onPressed();
}

void StatusNotifierItem::useActivationToken(const QString& token) const {
    requests_.onActivationToken(token.toStdString());
}

void StatusNotifierItem::send(const QString& signal) {
    bus_.send(
        QDBusMessage::createSignal(itemPath, QStringLiteral("org.kde.StatusNotifierItem"), signal));
}

StatusNotifierAdaptor::StatusNotifierAdaptor(StatusNotifierItem& item)
    : QDBusAbstractAdaptor(&item), item_(item) {}

QString StatusNotifierAdaptor::iconName() const {
    // The panels of LXQt and MATE draw a placeholder for a name that they do not find, and no
    // pixmap.
    const QString& name = item_.icon().name;
    const QString file = "icons/hicolor/symbolic/apps/" + name + ".svg";
    const bool isInstalled =
        !QStandardPaths::locate(QStandardPaths::GenericDataLocation, file).isEmpty();
    return isInstalled ? name : QString();
}

StatusToolTip StatusNotifierAdaptor::toolTip() const {
    return {.iconName = {}, .pixmaps = {}, .title = item_.toolTip(), .text = {}};
}

void StatusNotifierAdaptor::Activate(int, int) {
    item_.press();
}

void StatusNotifierAdaptor::SecondaryActivate(int, int) {
    item_.press();
}

void StatusNotifierAdaptor::ContextMenu(int, int) {
    // Panels show the exported menu themselves.
}

void StatusNotifierAdaptor::Scroll(int, const QString&) {
    // There is nothing to go through.
}

void StatusNotifierAdaptor::ProvideXdgActivationToken(const QString& token) {
    item_.useActivationToken(token);
}

} // namespace vigilo::platform
