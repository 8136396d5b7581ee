#include "agents/AgentSession.h"

#include <gtest/gtest.h>

namespace vigilo {
namespace {

AgentSession session() {
    return {.pid = 4242,
            .name = "Claude Code",
            .project = "webapp",
            .runtime = "5m",
            .isBusy = false,
            .processCount = 1};
}

TEST(AgentSession, isIdentifiedByItsPid) {
    EXPECT_EQ(session().id(), 4242);
}

TEST(AgentSession, tellsItsStatusByBusynessAlone) {
    AgentSession one = session();
    EXPECT_EQ(one.status(), "DETECTED");
    one.isBusy = true;
    EXPECT_EQ(one.status(), "BUSY SIGNAL");
    one.name = "Codex";
    EXPECT_EQ(one.status(), "BUSY SIGNAL");
}

TEST(AgentSession, hasTheLookOfItsAgent) {
    AgentSession one = session();
    EXPECT_EQ(one.symbol(), "sparkles");
    EXPECT_EQ(one.tint(), Tint(NamedColour::systemOrange));
    for (const char* other : {"Codex", "claude code", "", "Claude Code "}) {
        one.name = other;
        EXPECT_EQ(one.symbol(), "terminal.fill") << other;
        EXPECT_EQ(one.tint(), Tint(SrgbColour{.red = 0.4, .green = 0.72, .blue = 1.0})) << other;
    }
}

TEST(AgentSession, differsInAnyField) {
    const AgentSession one = session();
    EXPECT_EQ(one, session());
    for (int field = 0; field < 6; ++field) {
        AgentSession other = one;
        switch (field) {
        case 0:
            other.pid = 1;
            break;
        case 1:
            other.name = "Codex";
            break;
        case 2:
            other.project = "other";
            break;
        case 3:
            other.runtime = "6m";
            break;
        case 4:
            other.isBusy = true;
            break;
        default:
            other.processCount = 2;
            break;
        }
        EXPECT_FALSE(one == other) << "field " << field;
    }
}

} // namespace
} // namespace vigilo
