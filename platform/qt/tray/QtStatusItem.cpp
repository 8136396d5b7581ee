#include "platform/qt/tray/QtStatusItem.h"

#include "platform/qt/tray/StatusPicture.h"

#include <utility>

namespace vigilo::platform {

namespace {

constexpr auto menuPath = "/io/github/vigilo/Vigilo/StatusMenu";

/// The icon theme's name of a symbol of ours.
QString themeName(const QString& symbol) {
    return symbol.endsWith(QStringLiteral(".fill")) ? QStringLiteral("vigilo-on-symbolic")
                                                    : QStringLiteral("vigilo-off-symbolic");
}

} // namespace

QtStatusItem::QtStatusItem(StatusItemSpec spec, QtWindows& windows, SessionBus& bus,
                           bool isHostKnown,
                           std::function<void(const std::string&)> onActivationToken)
    : spec_(std::move(spec)), windows_(windows), bus_(bus),
      onActivationToken_(std::move(onActivationToken)) {
    model_.observe(spec_.menu);
    QObject::connect(&bus_, &SessionBus::changed, &model_, [this] { busChanged(false); });
    busChanged(isHostKnown);
}

void QtStatusItem::busChanged(bool isHostKnown) {
    watcher_.reset();
    item_.reset();
    menu_.reset();
    const QDBusConnection& bus = bus_.connection();
    if (!bus.isConnected()) {
        embed(true);
        return;
    }
    menu_.emplace(bus, QString::fromLatin1(menuPath), spec_.menu);
    item_.emplace(bus, menu_->path(),
                  StatusNotifierItem::Requests{.onPressed = spec_.onPressed,
                                               .onActivationToken = onActivationToken_});
    watcher_.emplace(bus, isHostKnown, [this](bool isHosted) { embed(!isHosted); });
    if (!shownMenu_.items.empty()) {
        menu_->setMenu(shownMenu_);
    }
    if (!image_.symbol.empty()) {
        showOnBus();
    }
}

void QtStatusItem::showOnBus() {
    const QString symbol = QString::fromStdString(image_.symbol);
    item_->setIcon(
        {.name = themeName(symbol),
         .pixmaps = [symbol] { return statusPixmaps(symbol); },
         .accessibilityDescription = QString::fromStdString(image_.accessibilityDescription)});
    item_->setToolTip(QString::fromStdString(toolTip_));
}

void QtStatusItem::setMenu(const Menu& menu) {
    if (menu == shownMenu_) {
        return;
    }
    shownMenu_ = menu;
    model_.setItems(menu.items);
    if (menu_) {
        menu_->setMenu(menu);
    }
}

void QtStatusItem::setImage(const StatusImage& image) {
    if (image == image_) {
        return;
    }
    image_ = image;
    if (item_) {
        showOnBus();
    }
    if (embedded_) {
        embedded_->setSymbol(QString::fromStdString(image_.symbol));
    }
}

void QtStatusItem::setToolTip(std::string_view text) {
    if (text == toolTip_) {
        return;
    }
    toolTip_ = text;
    const QString shown = QString::fromStdString(toolTip_);
    if (item_) {
        item_->setToolTip(shown);
    }
    if (embedded_) {
        embedded_->setToolTip(shown);
    }
}

void QtStatusItem::embed(bool isWanted) {
    if (!isWanted) {
        embedded_.reset();
    } else if (!embedded_ && ManagerSelection::isPossible()) {
        embedded_.emplace(EmbeddedIcon::Requests{
            .onPressed = spec_.onPressed,
            .onMenuWanted = [this](const QPoint& place) { openMenu(place); }});
        embedded_->setSymbol(QString::fromStdString(image_.symbol));
        embedded_->setToolTip(QString::fromStdString(toolTip_));
    }
}

void QtStatusItem::openMenu(const QPoint& place) {
    if (!menuWindow_) {
        menuWindow_.emplace(windows_, model_);
    }
    menuWindow_->open(place);
}

} // namespace vigilo::platform
