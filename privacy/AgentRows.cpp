#include "privacy/AgentRows.h"

#include <algorithm>
#include <variant>

namespace vigilo {

namespace {

QString text(std::string_view utf8) {
    return QString::fromUtf8(utf8);
}

QColor color(const Tint& tint) {
    if (const auto* const srgb = std::get_if<SrgbColour>(&tint)) {
        return QColor::fromRgbF(static_cast<float>(srgb->red), static_cast<float>(srgb->green),
                                static_cast<float>(srgb->blue), static_cast<float>(srgb->opacity));
    }
    return {0xFF, 0x9F, 0x0A}; // systemOrange, the only named one
}

} // namespace

QString agentDetail(const AgentSession& session) {
    const QString project = text(session.project);
    return session.processCount < 2
               ? project
               : project + QStringLiteral(" \u2022 ") + QString::number(session.processCount) +
                     QStringLiteral(" processes");
}

void AgentRows::show(const std::vector<AgentSession>& sessions) {
    for (std::size_t row = 0; row < sessions.size(); ++row) {
        place(sessions[row], row);
    }
    if (sessions_.size() > sessions.size()) {
        beginRemoveRows({}, static_cast<int>(sessions.size()),
                        static_cast<int>(sessions_.size()) - 1);
        sessions_.resize(sessions.size());
        endRemoveRows();
    }
}

/// Brings the session to its row, all rows before it being right already.
void AgentRows::place(const AgentSession& session, std::size_t row) {
    const auto at = sessions_.begin() + static_cast<std::ptrdiff_t>(row);
    const auto known = std::find_if(
        at, sessions_.end(), [&](const AgentSession& other) { return other.id() == session.id(); });
    const int target = static_cast<int>(row);
    if (known == sessions_.end()) {
        beginInsertRows({}, target, target);
        sessions_.insert(at, session);
        endInsertRows();
        return;
    }
    if (known != at) {
        const int source = static_cast<int>(known - sessions_.begin());
        beginMoveRows({}, source, source, {}, target);
        std::rotate(at, known, known + 1);
        endMoveRows();
    }
    if (sessions_[row] != session) {
        sessions_[row] = session;
        Q_EMIT dataChanged(index(target), index(target));
    }
}

int AgentRows::rowCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : static_cast<int>(sessions_.size());
}

QVariant AgentRows::data(const QModelIndex& index, int role) const {
    if (!checkIndex(index, CheckIndexOption::IndexIsValid)) {
        return {};
    }
    const AgentSession& session = sessions_[static_cast<std::size_t>(index.row())];
    switch (role) {
    case Name:
        return text(session.name);
    case Detail:
        return agentDetail(session);
    case Symbol:
        return text(session.symbol());
    case Tint:
        return color(session.tint());
    case Status:
        return text(session.status());
    case IsBusy:
        return session.isBusy;
    case Runtime:
        return text(session.runtime);
    default:
        return {};
    }
}

QHash<int, QByteArray> AgentRows::roleNames() const {
    return {{Name, "name"},     {Detail, "detail"}, {Symbol, "symbol"},  {Tint, "tint"},
            {Status, "status"}, {IsBusy, "isBusy"}, {Runtime, "runtime"}};
}

} // namespace vigilo
