#include "ui/components/MenuButton.h"

#include <gtest/gtest.h>

#include <array>
#include <string>

#include <QAccessible>
#include <QAccessibleStateChangeEvent>
#include <QGuiApplication>
#include <private/qguiapplication_p.h>
#include <qpa/qplatformaccessibility.h>
#include <qpa/qplatformintegration.h>

namespace vigilo {
namespace {

std::string program = "test";
std::string platformSwitch = "-platform";
std::string platform = "offscreen";
int toldChanges = 0;

void countExpanded(QAccessibleEvent* event) {
    const bool isExpanded =
        event->type() == QAccessible::StateChanged &&
        static_cast<QAccessibleStateChangeEvent*>(event)->changedStates().expanded;
    toldChanges += isExpanded ? 1 : 0;
}

TEST(MenuButton, tellsWhetherItsMenuIsOpen) {
    MenuButton button;
    const QAccessibleInterface* const access = QAccessible::queryAccessibleInterface(&button);
    ASSERT_NE(access, nullptr);
    EXPECT_TRUE(access->state().expandable);
    EXPECT_FALSE(access->state().expanded);
    button.setOpen(true);
    EXPECT_TRUE(access->state().expanded);
    button.setOpen(false);
    EXPECT_FALSE(access->state().expanded);
}

TEST(MenuButton, tellsOfEachChangeOnce) {
    // Told only to a platform that somebody listens to.
    int argumentCount = 3;
    std::array<char*, 4> arguments{program.data(), platformSwitch.data(), platform.data(), nullptr};
    const QGuiApplication application(argumentCount, arguments.data());
    MenuButton button;
    QGuiApplicationPrivate::platformIntegration()->accessibility()->setActive(true);
    QAccessible::installUpdateHandler(countExpanded);
    toldChanges = 0;
    button.setOpen(true);
    button.setOpen(true);
    EXPECT_EQ(toldChanges, 1);
    button.setOpen(false);
    EXPECT_EQ(toldChanges, 2);
    QAccessible::installUpdateHandler(nullptr);
}

TEST(MenuButton, isPressedLikeAnyButton) {
    MenuButton button;
    int presses = 0;
    QObject::connect(&button, &Button::clicked, &button, [&] { ++presses; });
    QAccessibleActionInterface* const actions =
        QAccessible::queryAccessibleInterface(&button)->actionInterface();
    ASSERT_NE(actions, nullptr);
    EXPECT_EQ(actions->actionNames(), QStringList({QAccessibleActionInterface::setFocusAction(),
                                                   QAccessibleActionInterface::pressAction()}));
    actions->doAction(QAccessibleActionInterface::pressAction());
    actions->doAction(QStringLiteral("Toggle"));
    EXPECT_EQ(presses, 1);
}

TEST(MenuButton, isNotShownWithoutAWindow) {
    MenuButton button;
    const QAccessible::State state = QAccessible::queryAccessibleInterface(&button)->state();
    EXPECT_TRUE(state.invisible);
    EXPECT_TRUE(state.focusable);
    EXPECT_FALSE(state.focused);
}

} // namespace
} // namespace vigilo
