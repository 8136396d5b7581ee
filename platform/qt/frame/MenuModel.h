#pragma once

#include "platform/Menu.h"

#include <QAbstractListModel>
#include <QtQml/qqmlregistration.h>

namespace vigilo::platform {

/// A menu for QML, a row a line. A menu that takes another's place changes only what differs, so
/// that one that is shown stays as it is otherwise.
class MenuModel : public QAbstractListModel {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("The program makes it.")

public:
    enum Check { NotCheckable, Off, On, Mixed };
    Q_ENUM(Check)

    void setItems(const std::vector<MenuItem>& items);
    void observe(MenuRequests requests);

    int rowCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role) const override;
    QHash<int, QByteArray> roleNames() const override;

    /// The menu is about to be shown.
    Q_INVOKABLE void prepare();

    /// Asks for what the row does, on the next turn of the event loop; nothing for a row that
    /// cannot be chosen.
    Q_INVOKABLE void trigger(int row);

    Q_INVOKABLE bool isSelectable(int row) const;

    /// The nearest row that can be chosen, after or (direction -1) before the given one, going
    /// round at the ends; -1 when there is none.
    Q_INVOKABLE int nextSelectable(int row, int direction) const;

    /// The next row after the given one that can be chosen and begins with the text, case aside,
    /// going round at the end; -1 when there is none.
    Q_INVOKABLE int nextBeginningWith(const QString& text, int row) const;

private:
    const MenuItem* item(int row) const;

    std::vector<MenuItem> items_;
    MenuRequests requests_;
};

} // namespace vigilo::platform
