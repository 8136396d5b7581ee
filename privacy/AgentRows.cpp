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
    const std::size_t kept = std::min(sessions_.size(), sessions.size());
    for (std::size_t row = 0; row < kept; ++row) {
        if (sessions_[row] != sessions[row]) {
            sessions_[row] = sessions[row];
            Q_EMIT dataChanged(index(static_cast<int>(row)), index(static_cast<int>(row)));
        }
    }
    if (sessions_.size() > kept) {
        beginRemoveRows({}, static_cast<int>(kept), static_cast<int>(sessions_.size()) - 1);
        sessions_.resize(kept);
        endRemoveRows();
    } else if (sessions.size() > kept) {
        beginInsertRows({}, static_cast<int>(kept), static_cast<int>(sessions.size()) - 1);
        sessions_ = sessions;
        endInsertRows();
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
