#pragma once

#include <QAccessibleActionInterface>
#include <QAccessibleObject>

namespace vigilo {

class MenuButton;

/// What the screen reader is told of a menu button. The toolkit's own answer for items, which this
/// stands in for, cannot tell that something is expanded. Nothing inside the button is told: its
/// name and description say it all.
class MenuButtonAccess : public QAccessibleObject, public QAccessibleActionInterface {
public:
    explicit MenuButtonAccess(MenuButton& button);

    /// Lets the toolkit ask here about every menu button; more than once is as good as once.
    static void install();

    /// Not while the button is being taken apart.
    bool isValid() const override;

    void* interface_cast(QAccessible::InterfaceType type) override;

    QWindow* window() const override;
    QAccessibleInterface* parent() const override;
    QAccessibleInterface* child(int index) const override;
    int childCount() const override;
    int indexOfChild(const QAccessibleInterface* child) const override;

    QString text(QAccessible::Text kind) const override;
    QRect rect() const override;
    QAccessible::Role role() const override;
    QAccessible::State state() const override;

    QStringList actionNames() const override;
    void doAction(const QString& name) override;
    QStringList keyBindingsForAction(const QString& name) const override;

private:
    MenuButton& button() const;
};

} // namespace vigilo
