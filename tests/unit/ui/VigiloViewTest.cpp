#include "ui/VigiloView.h"
#include "tests/unit/core/ControllerFixture.h"

#include <QCoreApplication>

#include <limits>

namespace vigilo {
namespace {

class VigiloViewTest : public ControllerFixture {
protected:
    /// Lets the view read what has changed.
    static void turn() { QCoreApplication::sendPostedEvents(); }

    /// Finds so many agents at the next scan.
    void findAgents(int count) {
        agents.assign(
            static_cast<std::size_t>(count),
            AgentSession{.pid = 1, .name = "Codex", .project = "webapp", .runtime = "5m"});
        controller->startAgentMonitoring();
        runLoop.runBackgroundWork();
        turn();
    }

    int argumentCount = 1;
    char name[5] = "test";
    char* arguments[2] = {name, nullptr};
    QCoreApplication application{argumentCount, arguments};
    VigiloView view{controller};
};

TEST_F(VigiloViewTest, proposesAgentLockUntilStopped) {
    EXPECT_EQ(view.selectedMinutes(), 510.0);
    EXPECT_EQ(view.selectedScreenMode(), AwakeMode::agentLock);
    EXPECT_EQ(view.durationText(), "Until stopped");
    EXPECT_EQ(view.durationIndex(), 5);
    EXPECT_EQ(view.modeTitle(), "Agent Lock");
    EXPECT_EQ(view.modeSymbol(), "eye.slash.fill");
    EXPECT_EQ(view.modeIndex(), 1);
    view.pressAction();
    EXPECT_EQ(controller->activeMode(), AwakeMode::agentLock);
    EXPECT_EQ(controller->remainingLabel(), "Until you stop it");
    EXPECT_EQ(fired(), (Names{"onStateChange", "onAgentLockRequested"}));
}

TEST_F(VigiloViewTest, offersItsRowsInOrderAndShowsWhatIsChosen) {
    const QList<QString> shown{"30 min",  "1 hour",  "2 hours",
                               "4 hours", "8 hours", "Until stopped"};
    EXPECT_EQ(VigiloView::durationRows(), (QList<QString>{"30 minutes", "1 hour", "2 hours",
                                                          "4 hours", "8 hours", "Until stopped"}));
    for (int row = 0; row < shown.size(); ++row) {
        view.chooseDuration(row);
        EXPECT_EQ(view.durationIndex(), row);
        EXPECT_EQ(view.durationText(), shown[row]);
    }
    view.selectMinutes(90);
    EXPECT_EQ(view.durationIndex(), -1);
    EXPECT_EQ(view.durationText(), "1 hr 30 min");

    const QList<QString> symbols{"rectangle.on.rectangle", "eye.slash.fill", "lock.fill"};
    EXPECT_EQ(VigiloView::modeRows(), (QList<QString>{"Stay Visible", "Agent Lock", "Apple Lock"}));
    EXPECT_EQ(VigiloView::modeRowSymbols(), symbols);
    for (int row = 0; row < symbols.size(); ++row) {
        view.chooseMode(row);
        EXPECT_EQ(view.modeIndex(), row);
        EXPECT_EQ(view.modeTitle(), VigiloView::modeRows()[row]);
        EXPECT_EQ(view.modeSymbol(), symbols[row]);
    }
}

TEST_F(VigiloViewTest, handsTheMinutesOfEveryRowToTheSession) {
    const QList<QString> remaining{"29m remaining",    "59m remaining",    "1h 59m remaining",
                                   "3h 59m remaining", "7h 59m remaining", "Until you stop it"};
    for (int row = 0; row < remaining.size(); ++row) {
        view.chooseDuration(row);
        view.pressAction();
        EXPECT_EQ(controller->remainingLabel(), remaining[row].toStdString());
        view.pressAction();
    }
}

TEST_F(VigiloViewTest, showsTheIdleState) {
    EXPECT_EQ(view.pillText(), "NORMAL SLEEP");
    EXPECT_EQ(view.heroSymbol(), "moon.stars.fill");
    EXPECT_EQ(view.headline(), "Keep this Mac awake");
    EXPECT_EQ(view.statusText(), "Watching for Claude Code and Codex");
    EXPECT_EQ(view.actionTitle(), "Start Awake Session");
    EXPECT_EQ(view.actionSymbol(), "play.fill");
}

TEST_F(VigiloViewTest, showsTheActiveState) {
    controller->start(120, AwakeMode::appleLock);
    turn();
    EXPECT_EQ(view.pillText(), "KEEPING AWAKE");
    EXPECT_EQ(view.heroSymbol(), "checkmark.circle.fill");
    EXPECT_EQ(view.headline(), "This Mac is staying awake");
    EXPECT_EQ(view.statusText(), "1h 59m remaining");
    EXPECT_EQ(view.actionTitle(), "End Awake Session");
    EXPECT_EQ(view.actionSymbol(), "stop.fill");
    EXPECT_EQ(view.activeModeTitle(), "Apple Lock");
    EXPECT_EQ(view.activeModeSymbol(), "lock.fill");
    EXPECT_EQ(view.modeTitle(), "Agent Lock");
}

TEST_F(VigiloViewTest, countsAgentsWhileIdle) {
    findAgents(1);
    EXPECT_EQ(view.statusText(), "1 agent process detected");
    findAgents(2);
    EXPECT_EQ(view.statusText(), "2 agent processes detected");
    findAgents(3);
    EXPECT_EQ(view.statusText(), "3 agent processes detected");
    controller->start(std::nullopt);
    turn();
    EXPECT_EQ(view.statusText(), "Until you stop it");
    controller->stop();
    findAgents(0);
    EXPECT_EQ(view.statusText(), "Watching for Claude Code and Codex");
}

TEST_F(VigiloViewTest, startsTheChosenSession) {
    view.chooseDuration(0);
    view.chooseMode(0);
    EXPECT_EQ(view.durationText(), "30 min");
    view.pressAction();
    EXPECT_EQ(controller->activeMode(), AwakeMode::visible);
    EXPECT_EQ(controller->remainingLabel(), "29m remaining");
    EXPECT_EQ(fired(), (Names{"onStatusRefresh", "onStateChange"}));
}

TEST_F(VigiloViewTest, startsAppleLock) {
    view.chooseMode(2);
    view.chooseDuration(4);
    view.pressAction();
    EXPECT_EQ(controller->remainingLabel(), "7h 59m remaining");
    runLoop.advance(350ms);
    EXPECT_EQ(systemLock.requests, 1);
}

TEST_F(VigiloViewTest, givesNoLimitFromTheUntilStoppedValueOn) {
    for (const double minutes : {510.0, 600.0, std::numeric_limits<double>::infinity()}) {
        view.selectMinutes(minutes);
        view.pressAction();
        EXPECT_EQ(controller->remainingLabel(), "Until you stop it") << minutes;
        controller->stop();
    }
    view.selectMinutes(59.9);
    view.pressAction();
    EXPECT_EQ(controller->remainingLabel(), "58m remaining");
}

TEST_F(VigiloViewTest, onlyStopsARunningSession) {
    controller->start(30, AwakeMode::visible);
    view.chooseMode(2);
    fired();
    view.pressAction();
    EXPECT_EQ(fired(), (Names{"onStateChange", "onSessionEnded"}));
    EXPECT_FALSE(controller->isActive());
}

TEST_F(VigiloViewTest, keepsTheChoiceAfterASession) {
    view.chooseDuration(1);
    view.pressAction();
    view.pressAction();
    EXPECT_EQ(view.durationText(), "1 hour");
    EXPECT_EQ(view.modeTitle(), "Agent Lock");
}

TEST_F(VigiloViewTest, choosingTouchesNoSession) {
    view.chooseDuration(0);
    view.chooseMode(0);
    EXPECT_EQ(fired(), Names{});
    EXPECT_TRUE(power.requests.empty());
}

TEST_F(VigiloViewTest, choosingTheSameRowOrNoneChangesNothing) {
    int changes = 0;
    QObject::connect(&view, &VigiloView::durationChanged, [&] { ++changes; });
    QObject::connect(&view, &VigiloView::modeChanged, [&] { ++changes; });
    view.chooseDuration(5);
    view.chooseDuration(6);
    view.chooseDuration(-1);
    view.chooseMode(1);
    view.chooseMode(3);
    view.chooseMode(-1);
    EXPECT_EQ(changes, 0);
    view.chooseMode(0);
    EXPECT_EQ(changes, 1);
}

TEST_F(VigiloViewTest, tellsOfAChangeOnceAndOnlyOfWhatDiffers) {
    int active = 0;
    int status = 0;
    int mode = 0;
    QObject::connect(&view, &VigiloView::isActiveChanged, [&] { ++active; });
    QObject::connect(&view, &VigiloView::statusTextChanged, [&] { ++status; });
    QObject::connect(&view, &VigiloView::activeModeChanged, [&] { ++mode; });
    controller->start(30, AwakeMode::visible);
    EXPECT_EQ(active, 0);
    turn();
    EXPECT_EQ(active, 1);
    EXPECT_EQ(status, 1);
    EXPECT_EQ(mode, 0);
    runLoop.advance(5s);
    turn();
    EXPECT_EQ(status, 1);
    runLoop.advance(1min);
    turn();
    EXPECT_EQ(status, 2);
    EXPECT_EQ(active, 1);
}

using VigiloViewDeathTest = VigiloViewTest;

TEST_F(VigiloViewDeathTest, stopsTheProcessForWhatIsNoNumberOfMinutes) {
    view.selectMinutes(std::numeric_limits<double>::quiet_NaN());
    EXPECT_DEATH(view.pressAction(), "internal error");
}

} // namespace
} // namespace vigilo
