#pragma once

#include "agents/AgentSession.h"

#include <vector>

#include <QAbstractListModel>
#include <QColor>
#include <QtQml/qqmlregistration.h>

namespace vigilo {

/// The agents on the lock screen, a row each. An update touches only the rows that differ. A row
/// keeps its place and changes what it shows: a screen reader reads the views of rows in the order
/// in which they were made.
class AgentRows : public QAbstractListModel {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("The program makes it.")

public:
    using QAbstractListModel::QAbstractListModel;

    /// Shows these sessions, in this order.
    void show(const std::vector<AgentSession>& sessions);

    int rowCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role) const override;
    QHash<int, QByteArray> roleNames() const override;

private:
    enum Role { Name = Qt::UserRole, Detail, Symbol, Tint, Status, IsBusy, Runtime };

    std::vector<AgentSession> sessions_;
};

/// What stands below an agent's name: its project and, from two on, the number of processes.
QString agentDetail(const AgentSession& session);

} // namespace vigilo
