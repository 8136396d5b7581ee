#include "privacy/AgentRows.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace vigilo {
namespace {

AgentSession session(std::int64_t pid, bool isBusy = false) {
    return {.pid = pid, .name = "Codex", .project = "webapp", .runtime = "5m", .isBusy = isBusy};
}

QVariant value(const AgentRows& rows, int row, const char* role) {
    return rows.data(rows.index(row), rows.roleNames().key(role));
}

/// What the model tells of its changes.
class Witness {
public:
    explicit Witness(const AgentRows& rows) {
        QObject::connect(&rows, &AgentRows::rowsInserted, &rows, [this](auto, int first, int last) {
            changes.push_back("insert " + std::to_string(first) + "-" + std::to_string(last));
        });
        QObject::connect(&rows, &AgentRows::rowsRemoved, &rows, [this](auto, int first, int last) {
            changes.push_back("remove " + std::to_string(first) + "-" + std::to_string(last));
        });
        QObject::connect(
            &rows, &AgentRows::rowsMoved, &rows, [this](auto, int from, int, auto, int to) {
                changes.push_back("move " + std::to_string(from) + " to " + std::to_string(to));
            });
        QObject::connect(&rows, &AgentRows::dataChanged, &rows, [this](const QModelIndex& index) {
            changes.push_back("change " + std::to_string(index.row()));
        });
    }

    std::vector<std::string> changes;
};

using Changes = std::vector<std::string>;

TEST(AgentRows, showWhatIsKnownOfEachAgent) {
    AgentRows rows;
    rows.show({{.pid = 7,
                .name = "Claude Code",
                .project = "compiler",
                .runtime = "1h 5m",
                .isBusy = true,
                .processCount = 2},
               session(8)});
    EXPECT_EQ(value(rows, 0, "name"), "Claude Code");
    EXPECT_EQ(value(rows, 0, "detail"), QStringLiteral("compiler \u2022 2 processes"));
    EXPECT_EQ(value(rows, 0, "status"), "BUSY SIGNAL");
    EXPECT_EQ(value(rows, 0, "isBusy"), true);
    EXPECT_EQ(value(rows, 0, "symbol"), "sparkles");
    EXPECT_EQ(value(rows, 0, "runtime"), "1h 5m");
    EXPECT_EQ(value(rows, 0, "tint").value<QColor>(), QColor(0xFF, 0x9F, 0x0A));
    EXPECT_EQ(value(rows, 1, "detail"), "webapp");
    EXPECT_EQ(value(rows, 1, "status"), "DETECTED");
    EXPECT_EQ(value(rows, 1, "symbol"), "terminal.fill");
    EXPECT_EQ(value(rows, 1, "tint").value<QColor>().toRgb(), QColor::fromRgbF(0.4F, 0.72F, 1.0F));
    EXPECT_FALSE(rows.data(rows.index(0), Qt::DisplayRole).isValid());
    EXPECT_FALSE(rows.data(rows.index(2), Qt::DisplayRole).isValid());
}

TEST(AgentRows, touchesOnlyWhatDiffers) {
    AgentRows rows;
    rows.show({session(1), session(2), session(3)});
    Witness witness(rows);
    rows.show({session(1), session(2), session(3)});
    EXPECT_EQ(witness.changes, Changes{});
    rows.show({session(1), session(2, true), session(3)});
    EXPECT_EQ(witness.changes, Changes{"change 1"});
}

TEST(AgentRows, staysInPlaceWhenTheOrderChanges) {
    AgentRows rows;
    rows.show({session(1), session(2), session(3)});
    Witness witness(rows);
    rows.show({session(1), session(3), session(2)});
    EXPECT_EQ(witness.changes, (Changes{"change 1", "change 2"}));
    rows.show({});
    EXPECT_EQ(rows.rowCount(), 0);
}

TEST(AgentRows, comesAndGoesAtTheEnd) {
    AgentRows rows;
    Witness witness(rows);
    rows.show({session(1), session(2)});
    rows.show({session(2)});
    rows.show({session(2), session(4)});
    EXPECT_EQ(witness.changes, (Changes{"insert 0-1", "change 0", "remove 1-1", "insert 1-1"}));
}

} // namespace
} // namespace vigilo
