#include "helpers/authenticate/Frames.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace vigilo::authentication {
namespace {

TEST(FrameReader, readsFramesThatComeInPiecesOfAnySize) {
    const std::string bytes = encode(FrameKind::hiddenPrompt, "Password: ") +
                              encode(FrameKind::information, "") +
                              encode(FrameKind::error, std::string(300, 'x'));
    for (std::size_t piece = 1; piece <= bytes.size(); ++piece) {
        FrameReader reader;
        std::vector<Frame> frames;
        for (std::size_t begin = 0; begin < bytes.size(); begin += piece) {
            reader.add(std::string_view(bytes).substr(begin, piece));
            while (const auto frame = reader.next()) {
                frames.push_back(*frame);
            }
        }
        ASSERT_EQ(frames.size(), 3u) << piece;
        EXPECT_EQ(frames[0], (Frame{FrameKind::hiddenPrompt, "Password: "}));
        EXPECT_EQ(frames[1], (Frame{FrameKind::information, ""}));
        EXPECT_EQ(frames[2], (Frame{FrameKind::error, std::string(300, 'x')}));
        EXPECT_FALSE(reader.isBroken());
    }
}

TEST(FrameReader, believesNothingAfterBytesThatAreNoFrame) {
    const std::string tooLong = std::string("I") + '\x01' + '\x10';
    for (const std::string& rubbish : {std::string("x\0\0", 3), std::string("A\0\0", 3), tooLong}) {
        FrameReader reader;
        reader.add(rubbish);
        EXPECT_FALSE(reader.next());
        EXPECT_TRUE(reader.isBroken());
        reader.add(encode(FrameKind::success, ""));
        EXPECT_FALSE(reader.next());
    }
}

TEST(Frames, cutTextsThatAreTooLong) {
    FrameReader reader;
    reader.add(encode(FrameKind::information, std::string(100000, 'x')));
    const auto frame = reader.next();
    ASSERT_TRUE(frame);
    EXPECT_EQ(frame->text.size(), longestText);
}

} // namespace
} // namespace vigilo::authentication
