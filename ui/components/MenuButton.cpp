#include "ui/components/MenuButton.h"

#include "ui/components/MenuButtonAccess.h"

#include <utility>

#include <QAccessibleStateChangeEvent>

namespace vigilo {

MenuButton::MenuButton(QQuickItem* parent) : Button(parent) {
    MenuButtonAccess::install();
}

void MenuButton::setOpen(bool isOpen) {
    if (std::exchange(isOpen_, isOpen) != isOpen) {
        Q_EMIT isOpenChanged();
        QAccessible::State changed;
        changed.expanded = true;
        QAccessibleStateChangeEvent event(this, changed);
        QAccessible::updateAccessibility(&event);
    }
}

} // namespace vigilo
