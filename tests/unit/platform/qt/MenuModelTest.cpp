#include "platform/qt/frame/MenuModel.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include <QCoreApplication>

namespace vigilo::platform {
namespace {

MenuItem item(const std::string& title, const std::string& action) {
    return {.title = title, .action = action};
}

class MenuModelTest : public testing::Test {
protected:
    MenuModelTest() {
        QObject::connect(&model, &MenuModel::dataChanged, &model,
                         [this](const QModelIndex& first) { note("changed", first.row()); });
        QObject::connect(&model, &MenuModel::rowsInserted, &model,
                         [this](const QModelIndex&, int first) { note("inserted", first); });
        QObject::connect(&model, &MenuModel::rowsRemoved, &model,
                         [this](const QModelIndex&, int first) { note("removed", first); });
        model.setItems(lines);
        news.clear();
    }

    void note(const std::string& what, int row) {
        news.push_back(what + ' ' + std::to_string(row));
    }

    QVariant value(int row, const char* role) const {
        return model.data(model.index(row), model.roleNames().key(role));
    }

    MenuModel model;
    std::vector<MenuItem> lines{item("State", ""),
                                {.isSeparator = true},
                                item("Open", "open"),
                                item("Other", "other"),
                                item("Quit", "quit")};
    std::vector<std::string> news;
};

using News = std::vector<std::string>;

TEST_F(MenuModelTest, showsALineARow) {
    lines[2].keyEquivalent = 'o';
    lines[3].checkState = CheckState::mixed;
    lines[4].isEnabled = false;
    model.setItems(lines);
    EXPECT_EQ(model.rowCount(), 5);
    EXPECT_EQ(value(2, "title"), "Open");
    EXPECT_EQ(value(2, "keys"), "Ctrl+O");
    EXPECT_EQ(value(0, "keys"), "");
    EXPECT_EQ(value(1, "isSeparator"), true);
    EXPECT_EQ(value(3, "check").value<MenuModel::Check>(), MenuModel::Mixed);
    EXPECT_EQ(value(2, "check").value<MenuModel::Check>(), MenuModel::NotCheckable);
    EXPECT_EQ(value(4, "isSelectable"), false);
    EXPECT_FALSE(model.data(model.index(5), Qt::DisplayRole).isValid());
}

TEST_F(MenuModelTest, tellsOfTheRowsThatDifferOnly) {
    model.setItems(lines);
    EXPECT_EQ(news, News{});
    lines[2].title = "Show";
    model.setItems(lines);
    EXPECT_EQ(news, News{"changed 2"});
    news.clear();
    lines.insert(lines.begin() + 1, item("More", ""));
    model.setItems(lines);
    EXPECT_EQ(news, News{"inserted 1"});
    EXPECT_EQ(value(1, "title"), "More");
    news.clear();
    lines.erase(lines.begin() + 3);
    model.setItems(lines);
    EXPECT_EQ(news, News{"removed 3"});
}

TEST_F(MenuModelTest, goesRoundTheRowsThatCanBeChosen) {
    EXPECT_EQ(model.nextSelectable(-1, 1), 2);
    EXPECT_EQ(model.nextSelectable(2, 1), 3);
    EXPECT_EQ(model.nextSelectable(4, 1), 2);
    EXPECT_EQ(model.nextSelectable(2, -1), 4);
    EXPECT_EQ(model.nextSelectable(5, -1), 4);
    EXPECT_EQ(model.nextBeginningWith(QStringLiteral("o"), -1), 2);
    EXPECT_EQ(model.nextBeginningWith(QStringLiteral("O"), 2), 3);
    EXPECT_EQ(model.nextBeginningWith(QStringLiteral("o"), 3), 2);
    EXPECT_EQ(model.nextBeginningWith(QStringLiteral("s"), -1), -1) << "that line only informs";
    model.setItems({});
    EXPECT_EQ(model.nextSelectable(-1, 1), -1);
}

TEST_F(MenuModelTest, asksForAnActionOnTheNextTurnOfTheLoop) {
    int argumentCount = 0;
    const QCoreApplication application(argumentCount, nullptr);
    std::vector<std::string> asked;
    model.observe({.onAction = [&](const std::string& action) { asked.push_back(action); },
                   .onWillOpen = [&] { asked.emplace_back("will open"); }});
    model.prepare();
    model.trigger(3);
    for (const int row : {0, 1, 9, -1}) {
        model.trigger(row);
    }
    EXPECT_EQ(asked, News{"will open"});
    QCoreApplication::processEvents();
    EXPECT_EQ(asked, (News{"will open", "other"}));
}

TEST_F(MenuModelTest, withNobodyToAskDoesNothing) {
    model.prepare();
    model.trigger(2);
}

} // namespace
} // namespace vigilo::platform
