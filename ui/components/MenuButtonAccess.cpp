#include "ui/components/MenuButtonAccess.h"

#include "ui/components/MenuButton.h"

#include <QQmlContext>
#include <QQmlEngine>
#include <QQmlProperty>
#include <QQuickWindow>

namespace vigilo {

namespace {

/// As QML has set it.
QString attached(MenuButton& button, const char* property) {
    return QQmlProperty::read(&button, QLatin1String(property), qmlContext(&button)).toString();
}

QRect onScreen(const QQuickItem& item) {
    return {item.mapToGlobal(QPointF()).toPoint(),
            QSize(static_cast<int>(item.width()), static_cast<int>(item.height()))};
}

} // namespace

MenuButtonAccess::MenuButtonAccess(MenuButton& button) : QAccessibleObject(&button) {}

void MenuButtonAccess::install() {
    QAccessible::installFactory([](const QString& type, QObject* object) -> QAccessibleInterface* {
        auto* const button = type == QLatin1String(MenuButton::staticMetaObject.className())
                                 ? qobject_cast<MenuButton*>(object)
                                 : nullptr;
        return button == nullptr ? nullptr : new MenuButtonAccess(*button);
    });
}

MenuButton& MenuButtonAccess::button() const {
    return *static_cast<MenuButton*>(object());
}

bool MenuButtonAccess::isValid() const {
    return qobject_cast<const MenuButton*>(object()) != nullptr;
}

void* MenuButtonAccess::interface_cast(QAccessible::InterfaceType type) {
    return type == QAccessible::ActionInterface ? static_cast<QAccessibleActionInterface*>(this)
                                                : nullptr;
}

QWindow* MenuButtonAccess::window() const {
    return button().window();
}

/// The toolkit knows nothing of items that the screen reader is not told of.
QAccessibleInterface* MenuButtonAccess::parent() const {
    for (QQuickItem* item = button().parentItem(); item != nullptr; item = item->parentItem()) {
        if (QAccessibleInterface* const found = QAccessible::queryAccessibleInterface(item)) {
            return found;
        }
    }
    return QAccessible::queryAccessibleInterface(window());
}

QAccessibleInterface* MenuButtonAccess::child(int /*index*/) const {
    return nullptr;
}

int MenuButtonAccess::childCount() const {
    return 0;
}

int MenuButtonAccess::indexOfChild(const QAccessibleInterface* /*child*/) const {
    return -1;
}

QString MenuButtonAccess::text(QAccessible::Text kind) const {
    switch (kind) {
    case QAccessible::Name:
        return attached(button(), "Accessible.name");
    case QAccessible::Description:
        return attached(button(), "Accessible.description");
    default:
        return {};
    }
}

QRect MenuButtonAccess::rect() const {
    return onScreen(button());
}

QAccessible::Role MenuButtonAccess::role() const {
    return QAccessible::ButtonMenu;
}

QAccessible::State MenuButtonAccess::state() const {
    const QQuickWindow* const window = button().window();
    const QRect place = rect();
    QAccessible::State state;
    state.invisible =
        window == nullptr || !window->isVisible() || !button().isVisible() || place.isEmpty();
    state.offscreen = window != nullptr && !onScreen(*window->contentItem()).intersects(place);
    state.disabled = !button().isEnabled();
    state.focusable = true;
    state.focused = button().hasActiveFocus();
    state.expandable = true;
    state.expanded = button().isOpen();
    return state;
}

QStringList MenuButtonAccess::actionNames() const {
    return {setFocusAction(), pressAction()};
}

void MenuButtonAccess::doAction(const QString& name) {
    if (name == pressAction()) {
        Q_EMIT button().clicked();
    } else if (name == setFocusAction()) {
        button().forceActiveFocus();
    }
}

QStringList MenuButtonAccess::keyBindingsForAction(const QString& /*name*/) const {
    return {};
}

} // namespace vigilo
