#include "privacy/AgentLockView.h"
#include "tests/unit/core/ControllerFixture.h"

#include <QCoreApplication>

#include <chrono>
#include <memory>

namespace vigilo {
namespace {

using namespace std::chrono_literals;

AgentSession agent(std::int64_t pid, std::int64_t processCount = 1) {
    return {.pid = pid,
            .name = "Codex",
            .project = "webapp",
            .runtime = "5m",
            .isBusy = false,
            .processCount = processCount};
}

class AgentLockViewTest : public ControllerFixture {
protected:
    void find(std::vector<AgentSession> sessions) {
        agents = std::move(sessions);
        controller->startAgentMonitoring();
        runLoop.runBackgroundWork();
        QCoreApplication::sendPostedEvents();
    }

    int argumentCount = 1;
    char name[5] = "test";
    char* arguments[2] = {name, nullptr};
    QCoreApplication application{argumentCount, arguments};
    int unlocks = 0;
    int appleLocks = 0;
    AgentLockView view{controller, [this] { ++unlocks; }, [this] { ++appleLocks; }};
};

TEST_F(AgentLockViewTest, countsTheAgentsInItsHeader) {
    EXPECT_EQ(view.header(), "AGENT STATUS");
    EXPECT_FALSE(view.hasAgents());
    find({agent(1)});
    EXPECT_EQ(view.header(), "1 AGENT DETECTED");
    EXPECT_TRUE(view.hasAgents());
    find({agent(1), agent(2)});
    EXPECT_EQ(view.header(), "2 AGENTS DETECTED");
    find({agent(1), agent(2), agent(3)});
    EXPECT_EQ(view.header(), "3 AGENTS DETECTED");
    EXPECT_EQ(view.agents()->rowCount(), 3);
}

TEST_F(AgentLockViewTest, followsTheRemainingTime) {
    controller->start(60);
    QCoreApplication::sendPostedEvents();
    EXPECT_EQ(view.remaining(), "59m remaining");
    runLoop.advance(5min);
    QCoreApplication::sendPostedEvents();
    EXPECT_EQ(view.remaining(), "54m remaining");
}

TEST_F(AgentLockViewTest, showsAtOnceWhatIsSoWhenItIsMade) {
    controller->start(60);
    find({agent(1)});
    AgentLockView later(
        controller, [] {}, [] {});
    EXPECT_EQ(later.header(), "1 AGENT DETECTED");
    EXPECT_EQ(later.agents()->rowCount(), 1);
    EXPECT_EQ(later.remaining(), "59m remaining");
}

TEST_F(AgentLockViewTest, tellsOfWhatDiffersOnly) {
    int headers = 0;
    int remainders = 0;
    QObject::connect(&view, &AgentLockView::headerChanged, [&] { ++headers; });
    QObject::connect(&view, &AgentLockView::remainingChanged, [&] { ++remainders; });
    find({agent(1)});
    find({agent(2)});
    EXPECT_EQ(headers, 1);
    EXPECT_EQ(remainders, 0);
    controller->start(60);
    QCoreApplication::sendPostedEvents();
    runLoop.advance(5s);
    QCoreApplication::sendPostedEvents();
    EXPECT_EQ(headers, 1);
    EXPECT_EQ(remainders, 1);
}

TEST_F(AgentLockViewTest, passesItsButtonsOn) {
    view.pressUnlock();
    view.pressUseAppleLock();
    EXPECT_EQ(unlocks, 1);
    EXPECT_EQ(appleLocks, 1);
}

TEST_F(AgentLockViewTest, mayBeTakenDownByItsButtonWhoseActionIsKeptUntilItReturns) {
    auto held = std::make_shared<int>();
    const std::weak_ptr<int> watched = held;
    bool isHeld = false;
    std::unique_ptr<AgentLockView> other;
    other = std::make_unique<AgentLockView>(
        controller, [] {},
        [&, held = std::move(held)] {
            // What the closure refers to has to be looked up before it may be gone.
            const std::weak_ptr<int>& kept = watched;
            bool& result = isHeld;
            other.reset();
            result = !kept.expired();
        });
    other->pressUseAppleLock();
    EXPECT_TRUE(isHeld);
    EXPECT_TRUE(watched.expired());
}

} // namespace
} // namespace vigilo
