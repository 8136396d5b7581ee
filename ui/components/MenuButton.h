#pragma once

#include "ui/components/Button.h"

namespace vigilo {

/// A button that opens a menu, and tells the screen reader whether the menu is open. Its role, name
/// and description are those of the attached type "Accessible".
// By its full name, as the tools for QML look it up.
class MenuButton : public vigilo::Button {
    Q_OBJECT
    Q_PROPERTY(bool isOpen READ isOpen WRITE setOpen NOTIFY isOpenChanged)
    QML_NAMED_ELEMENT(MenuButtonArea)

public:
    explicit MenuButton(QQuickItem* parent = nullptr);

    /// Whether the menu is on the screen; who shows it says so.
    bool isOpen() const { return isOpen_; }
    void setOpen(bool isOpen);

Q_SIGNALS:
    void isOpenChanged();

private:
    bool isOpen_ = false;
};

} // namespace vigilo
