#include "platform/qt/frame/MenuModel.h"

#include <utility>

namespace vigilo::platform {

namespace {

enum Role { TitleRole = Qt::UserRole, KeysRole, IsSelectableRole, IsSeparatorRole, CheckRole };

QString keys(char keyEquivalent) {
    return keyEquivalent == '\0'
               ? QString()
               : QStringLiteral("Ctrl+") + QString(QChar::fromLatin1(keyEquivalent)).toUpper();
}

MenuModel::Check check(CheckState state) {
    switch (state) {
    case CheckState::none:
        break;
    case CheckState::off:
        return MenuModel::Off;
    case CheckState::on:
        return MenuModel::On;
    case CheckState::mixed:
        return MenuModel::Mixed;
    }
    return MenuModel::NotCheckable;
}

} // namespace

void MenuModel::setItems(const std::vector<MenuItem>& items) {
    const KeptItems kept = keptItems(items_, items);
    const auto front = static_cast<int>(kept.front);
    const auto lastRemoved = static_cast<int>(items_.size() - kept.back) - 1;
    const auto lastInserted = static_cast<int>(items.size() - kept.back) - 1;
    if (lastRemoved >= front) {
        beginRemoveRows({}, front, lastRemoved);
        items_.erase(items_.begin() + front, items_.begin() + lastRemoved + 1);
        endRemoveRows();
    }
    if (lastInserted >= front) {
        beginInsertRows({}, front, lastInserted);
        items_.insert(items_.begin() + front, items.begin() + front,
                      items.begin() + lastInserted + 1);
        endInsertRows();
    }
    for (std::size_t row = 0; row < items.size(); ++row) {
        if (items_[row] != items[row]) {
            items_[row] = items[row];
            const QModelIndex changed = index(static_cast<int>(row));
            Q_EMIT dataChanged(changed, changed);
        }
    }
}

void MenuModel::observe(MenuRequests requests) {
    requests_ = std::move(requests);
}

int MenuModel::rowCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : static_cast<int>(items_.size());
}

QVariant MenuModel::data(const QModelIndex& index, int role) const {
    const MenuItem* const shown = item(index.row());
    if (shown == nullptr) {
        return {};
    }
    switch (role) {
    case TitleRole:
        return QString::fromStdString(shown->title);
    case KeysRole:
        return keys(shown->keyEquivalent);
    case IsSelectableRole:
        return isSelectable(index.row());
    case IsSeparatorRole:
        return shown->isSeparator;
    case CheckRole:
        return check(shown->checkState);
    default:
        return {};
    }
}

QHash<int, QByteArray> MenuModel::roleNames() const {
    return {{TitleRole, "title"},
            {KeysRole, "keys"},
            {IsSelectableRole, "isSelectable"},
            {IsSeparatorRole, "isSeparator"},
            {CheckRole, "check"}};
}

void MenuModel::prepare() {
    if (requests_.onWillOpen) {
        requests_.onWillOpen();
    }
}

void MenuModel::trigger(int row) {
    if (!isSelectable(row) || !requests_.onAction) {
        return;
    }
    QMetaObject::invokeMethod(
        this,
        [this, action = items_[static_cast<std::size_t>(row)].action] {
            requests_.onAction(action);
        },
        Qt::QueuedConnection);
}

bool MenuModel::isSelectable(int row) const {
    const MenuItem* const shown = item(row);
    return shown != nullptr && shown->isEnabled && !shown->action.empty();
}

int MenuModel::nextSelectable(int row, int direction) const {
    const int count = rowCount();
    for (int step = 1; step <= count; ++step) {
        const int next = ((row + direction * step) % count + count) % count;
        if (isSelectable(next)) {
            return next;
        }
    }
    return -1;
}

int MenuModel::nextBeginningWith(const QString& text, int row) const {
    const int count = rowCount();
    for (int step = 1; step <= count; ++step) {
        const int next = (row + step) % count;
        if (isSelectable(next) &&
            QString::fromStdString(items_[static_cast<std::size_t>(next)].title)
                .startsWith(text, Qt::CaseInsensitive)) {
            return next;
        }
    }
    return -1;
}

const MenuItem* MenuModel::item(int row) const {
    return row >= 0 && row < rowCount() ? &items_[static_cast<std::size_t>(row)] : nullptr;
}

} // namespace vigilo::platform
