#include "platform/linux/tray/MenuExport.h"

#include "platform/linux/tray/MenuProperties.h"

#include <algorithm>
#include <utility>

#include <QDBusMessage>

namespace vigilo::platform {

namespace {

constexpr int rootId = 0;

bool isRoot(int id) {
    return id == rootId;
}

} // namespace

MenuExport::MenuExport(QDBusConnection bus, const QString& path, MenuRequests requests)
    : bus_(std::move(bus)), path_(path), requests_(std::move(requests)) {
    registerMenuTypes();
    new MenuAdaptor(*this);
    bus_.registerObject(path_, this, QDBusConnection::ExportAdaptors);
}

MenuExport::~MenuExport() {
    bus_.unregisterObject(path_);
}

void MenuExport::setMenu(const Menu& menu) {
    if (menu == menu_) {
        return;
    }
    const KeptItems kept = keptItems(menu_.items, menu.items);
    const bool isSameLayout =
        kept.front + kept.back == menu.items.size() && menu.items.size() == menu_.items.size();
    std::vector<Line> lines;
    QList<MenuLine> updated;
    QList<MenuLineRemovals> removed;
    for (std::size_t index = 0; index < menu.items.size(); ++index) {
        Line line{.id = 0, .item = menu.items[index], .properties = {}};
        line.properties = menuProperties(line.item);
        const bool isNew = index >= kept.front && index < menu.items.size() - kept.back;
        if (isNew) {
            line.id = ++lastId_;
        } else {
            const std::size_t before =
                index < kept.front ? index : index + lines_.size() - menu.items.size();
            line.id = lines_[before].id;
            if (const auto change = propertyChange(lines_[before].properties, line.properties)) {
                if (!change->updated.isEmpty()) {
                    updated.append({line.id, change->updated});
                }
                if (!change->removed.isEmpty()) {
                    removed.append({line.id, change->removed});
                }
            }
        }
        lines.push_back(std::move(line));
    }
    lines_ = std::move(lines);
    menu_ = menu;
    if (!updated.isEmpty() || !removed.isEmpty()) {
        send(QStringLiteral("ItemsPropertiesUpdated"),
             {QVariant::fromValue(updated), QVariant::fromValue(removed)});
    }
    if (!isSameLayout) {
        ++revision_;
        send(QStringLiteral("LayoutUpdated"), {revision_, rootId});
    }
}

void MenuExport::send(const QString& signal, const QVariantList& arguments) {
    QDBusMessage message =
        QDBusMessage::createSignal(path_, QStringLiteral("com.canonical.dbusmenu"), signal);
    message.setArguments(arguments);
    bus_.send(message);
}

const MenuExport::Line* MenuExport::find(int id) const {
    const auto found = std::find_if(lines_.begin(), lines_.end(),
                                    [id](const Line& line) { return line.id == id; });
    return found == lines_.end() ? nullptr : &*found;
}

bool MenuExport::isLine(int id) const {
    return isRoot(id) || find(id) != nullptr;
}

MenuNode MenuExport::layout(int parent, int depth, const QStringList& names) const {
    if (!isRoot(parent)) {
        const Line* const line = find(parent);
        return line == nullptr ? MenuNode{}
                               : MenuNode{line->id, chosenProperties(line->properties, names), {}};
    }
    MenuNode root{
        rootId,
        chosenProperties({{QStringLiteral("children-display"), QStringLiteral("submenu")}}, names),
        {}};
    if (depth != 0) {
        for (const Line& line : lines_) {
            const MenuNode node{line.id, chosenProperties(line.properties, names), {}};
            root.children.append(QDBusVariant(QVariant::fromValue(node)));
        }
    }
    return root;
}

QList<MenuLine> MenuExport::lines(const QList<int>& ids, const QStringList& names) const {
    QList<MenuLine> list;
    for (const Line& line : lines_) {
        if (ids.isEmpty() || ids.contains(line.id)) {
            list.append({line.id, chosenProperties(line.properties, names)});
        }
    }
    return list;
}

QDBusVariant MenuExport::property(int id, const QString& name) const {
    const Line* const line = find(id);
    return line == nullptr ? QDBusVariant() : QDBusVariant(line->properties.value(name));
}

void MenuExport::happened(int id, const QString& event) {
    const Line* const line = find(id);
    if (line != nullptr && event == QStringLiteral("clicked") && line->item.isEnabled &&
        !line->item.action.empty()) {
        // Later, so that a panel that waits for the answer never waits for what the action shows;
        // and by a copy, since the action may outlast this menu.
        QMetaObject::invokeMethod(
            this, [onAction = requests_.onAction, action = line->item.action] { onAction(action); },
            Qt::QueuedConnection);
    }
}

bool MenuExport::aboutToShow() {
    const Menu before = menu_;
    requests_.onWillOpen();
    // cppcheck-suppress knownConditionTrueFalse ; the request may have installed another menu
    return menu_ != before;
}

void MenuExport::refuse(int id) const {
    sendErrorReply(QDBusError::InvalidArgs,
                   QStringLiteral("There is no line with the number %1.").arg(id));
}

MenuAdaptor::MenuAdaptor(MenuExport& menu) : QDBusAbstractAdaptor(&menu), menu_(menu) {}

uint MenuAdaptor::GetLayout(int parentId, int recursionDepth, const QStringList& propertyNames,
                            MenuNode& layout) {
    if (!menu_.isLine(parentId)) {
        menu_.refuse(parentId);
        return 0;
    }
    layout = menu_.layout(parentId, recursionDepth, propertyNames);
    return menu_.revision();
}

QList<MenuLine> MenuAdaptor::GetGroupProperties(const QList<int>& ids,
                                                const QStringList& propertyNames) {
    return menu_.lines(ids, propertyNames);
}

QDBusVariant MenuAdaptor::GetProperty(int id, const QString& name) {
    QDBusVariant value = menu_.property(id, name);
    if (!value.variant().isValid()) {
        menu_.refuse(id);
    }
    return value;
}

void MenuAdaptor::Event(int id, const QString& eventId, const QDBusVariant&, uint) {
    if (!menu_.isLine(id)) {
        menu_.refuse(id);
        return;
    }
    menu_.happened(id, eventId);
}

QList<int> MenuAdaptor::EventGroup(const QList<MenuEvent>& events) {
    QList<int> errors;
    for (const MenuEvent& event : events) {
        if (menu_.isLine(event.id)) {
            menu_.happened(event.id, event.name);
        } else {
            errors.append(event.id);
        }
    }
    return errors;
}

bool MenuAdaptor::AboutToShow(int id) {
    if (!menu_.isLine(id)) {
        menu_.refuse(id);
        return false;
    }
    return isRoot(id) && menu_.aboutToShow();
}

QList<int> MenuAdaptor::AboutToShowGroup(const QList<int>& ids, QList<int>& idErrors) {
    QList<int> needed;
    for (const int id : ids) {
        if (!menu_.isLine(id)) {
            idErrors.append(id);
        } else if (isRoot(id) && menu_.aboutToShow()) {
            needed.append(id);
        }
    }
    return needed;
}

} // namespace vigilo::platform
