#include "helpers/authenticate/Conversation.h"

#include <gtest/gtest.h>

#include <array>
#include <cstdlib>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include <security/pam_appl.h>
#include <sys/socket.h>
#include <unistd.h>

namespace vigilo::authentication {
namespace {

/// Stands where PAM and the program stand: on both sides of the conversation.
class ConversationTest : public testing::Test {
protected:
    ConversationTest() : before_(dup(socketDescriptor)) {
        std::array<int, 2> ends{};
        EXPECT_EQ(socketpair(AF_UNIX, SOCK_STREAM, 0, ends.data()), 0);
        // The helper's end has a fixed number, which the program's end may have been given.
        program_ = dup(ends[0]);
        EXPECT_EQ(dup2(ends[1], socketDescriptor), socketDescriptor);
        for (const int end : ends) {
            if (end != socketDescriptor) {
                close(end);
            }
        }
    }

    ~ConversationTest() override {
        close(program_);
        if (before_ >= 0) {
            dup2(before_, socketDescriptor);
            close(before_);
        } else {
            close(socketDescriptor);
        }
    }

    /// The program's answer, there before the question.
    void answer(const std::string& text) const { write(encode(FrameKind::answer, text)); }

    void write(const std::string& bytes) const {
        EXPECT_EQ(::send(program_, bytes.data(), bytes.size(), 0),
                  static_cast<ssize_t>(bytes.size()));
    }

    /// Nothing more will come from the program.
    void hangUp() const { shutdown(program_, SHUT_WR); }

    /// What the helper has sent.
    std::vector<Frame> sent() const {
        std::string bytes(65536, '\0');
        const ssize_t count = recv(program_, bytes.data(), bytes.size(), MSG_DONTWAIT);
        bytes.resize(count > 0 ? static_cast<std::size_t>(count) : 0);
        FrameReader reader;
        reader.add(bytes);
        std::vector<Frame> frames;
        while (auto frame = reader.next()) {
            frames.push_back(std::move(*frame));
        }
        EXPECT_FALSE(reader.isBroken());
        return frames;
    }

    struct Reply {
        int status = 0;
        std::vector<std::optional<std::string>> answers;
    };

    /// What a PAM module gets for its messages.
    static Reply converse(const std::vector<pam_message>& messages,
                          const pam_conv& talk = conversation()) {
        std::vector<const pam_message*> pointers;
        pointers.reserve(messages.size());
        for (const pam_message& message : messages) {
            pointers.push_back(&message);
        }
        pam_response* responses = nullptr;
        const int count = static_cast<int>(messages.size());
        Reply reply{
            .status = talk.conv(count, pointers.data(), &responses, nullptr),
            .answers = {},
        };
        if (responses != nullptr) {
            for (int index = 0; index < count; ++index) {
                char* const text = responses[index].resp;
                reply.answers.push_back(text != nullptr ? std::optional<std::string>(text)
                                                        : std::nullopt);
                std::free(text);
            }
            std::free(responses);
        }
        return reply;
    }

private:
    int before_;
    int program_ = -1;
};

using Frames = std::vector<Frame>;

TEST_F(ConversationTest, passesMessagesOnAndBringsAnswersBackInOrder) {
    answer("ada");
    answer("secret");
    const Reply reply = converse({{PAM_TEXT_INFO, "Welcome"},
                                  {PAM_PROMPT_ECHO_ON, "Name: "},
                                  {PAM_ERROR_MSG, "Caps Lock is on"},
                                  {PAM_PROMPT_ECHO_OFF, "Password: "}});
    EXPECT_EQ(reply.status, PAM_SUCCESS);
    EXPECT_EQ(reply.answers, (std::vector<std::optional<std::string>>{std::nullopt, "ada",
                                                                      std::nullopt, "secret"}));
    EXPECT_EQ(sent(), (Frames{{FrameKind::information, "Welcome"},
                              {FrameKind::visiblePrompt, "Name: "},
                              {FrameKind::error, "Caps Lock is on"},
                              {FrameKind::hiddenPrompt, "Password: "}}));
}

TEST_F(ConversationTest, takesAMissingTextForAnEmptyOne) {
    answer("");
    const Reply reply = converse({{PAM_PROMPT_ECHO_OFF, nullptr}});
    EXPECT_EQ(reply.status, PAM_SUCCESS);
    EXPECT_EQ(reply.answers, (std::vector<std::optional<std::string>>{""}));
    EXPECT_EQ(sent(), (Frames{{FrameKind::hiddenPrompt, ""}}));
}

TEST_F(ConversationTest, takesTheLongestAnswerWhole) {
    const std::string longest(longestAnswer, 'x');
    answer(longest);
    EXPECT_EQ(converse({{PAM_PROMPT_ECHO_OFF, "?"}}).answers.at(0), longest);
}

TEST_F(ConversationTest, givesNoAnswersWhereNoneAreWanted) {
    const pam_message message{PAM_TEXT_INFO, "Wait"};
    const pam_message* pointer = &message;
    EXPECT_EQ(conversation().conv(1, &pointer, nullptr, nullptr), PAM_SUCCESS);
    EXPECT_EQ(sent(), (Frames{{FrameKind::information, "Wait"}}));
}

TEST_F(ConversationTest, withoutQuestionsPassesMessagesOnAndRefusesWhateverAsks) {
    EXPECT_EQ(converse({{PAM_TEXT_INFO, "Touch"}}, conversationWithoutQuestions()).status,
              PAM_SUCCESS);
    for (const int question : {PAM_PROMPT_ECHO_OFF, PAM_PROMPT_ECHO_ON}) {
        answer("secret"); // there for whoever would read it, who would wait for it otherwise
        const Reply reply = converse({{PAM_TEXT_INFO, "Touch"}, {question, "Password: "}},
                                     conversationWithoutQuestions());
        EXPECT_EQ(reply.status, PAM_CONV_ERR);
        EXPECT_TRUE(reply.answers.empty());
    }
    EXPECT_EQ(sent(), (Frames{{FrameKind::information, "Touch"}}));
}

TEST_F(ConversationTest, refusesNumbersOfMessagesThatPamDoesNotAllow) {
    for (const int count : {-1, 0, PAM_MAX_NUM_MSG + 1}) {
        for (const pam_conv& talk : {conversation(), conversationWithoutQuestions()}) {
            pam_response* responses = nullptr;
            EXPECT_EQ(talk.conv(count, nullptr, &responses, nullptr), PAM_CONV_ERR);
            EXPECT_EQ(responses, nullptr);
        }
    }
    EXPECT_EQ(sent(), Frames{});
}

TEST_F(ConversationTest, refusesAnUnknownStyleAndKeepsNoAnswer) {
    constexpr int unknownStyle = 99;
    answer("secret");
    const Reply reply = converse({{PAM_PROMPT_ECHO_OFF, "Password: "}, {unknownStyle, "?"}});
    EXPECT_EQ(reply.status, PAM_CONV_ERR);
    EXPECT_TRUE(reply.answers.empty());
}

TEST_F(ConversationTest, passesADelayOnInMilliseconds) {
    reportDelay(PAM_AUTH_ERR, 2'000'999, nullptr);
    EXPECT_EQ(sent(), (Frames{{FrameKind::delay, "2000"}}));
}

using ConversationDeathTest = ConversationTest;

TEST_F(ConversationDeathTest, endsTheHelperWhenAnAnswerIsTooLong) {
    answer(std::string(longestAnswer + 1, 'x'));
    EXPECT_EXIT(converse({{PAM_PROMPT_ECHO_OFF, "?"}}), testing::ExitedWithCode(EXIT_FAILURE), "");
}

TEST_F(ConversationDeathTest, endsTheHelperWhenAnAnswerIsNone) {
    write(encode(FrameKind::success, "secret"));
    EXPECT_EXIT(converse({{PAM_PROMPT_ECHO_OFF, "?"}}), testing::ExitedWithCode(EXIT_FAILURE), "");
}

class InterruptedConversationDeathTest : public ConversationTest,
                                         public testing::WithParamInterface<std::string> {};

TEST_P(InterruptedConversationDeathTest, endsTheHelper) {
    write(GetParam());
    hangUp();
    EXPECT_EXIT(converse({{PAM_PROMPT_ECHO_OFF, "?"}}), testing::ExitedWithCode(EXIT_FAILURE), "");
}

INSTANTIATE_TEST_SUITE_P(WhereverItIsCut, InterruptedConversationDeathTest,
                         testing::Values(std::string(), std::string("A"),
                                         std::string("A\x05\0ab", 5)));

} // namespace
} // namespace vigilo::authentication
