#include "platform/linux/compositor/CompositorInterfaces.h"

#include "platform/linux/FileDescriptor.h"
#include "tests/unit/platform/login/ScratchFolder.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <cstdlib>
#include <string>
#include <string_view>
#include <thread>
#include <vector>

#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

namespace vigilo::platform {
namespace {

using namespace std::chrono_literals;

class CompositorInterfaces : public testing::Test {
protected:
    CompositorInterfaces() : path_(folder_.path() / "compositor") {
        setenv("WAYLAND_DISPLAY", path_.c_str(), 1);
        unsetenv("WAYLAND_SOCKET");
        std::copy(path_.begin(), path_.end(), std::begin(address_.sun_path));
    }

    ~CompositorInterfaces() override { unsetenv("WAYLAND_DISPLAY"); }

    const sockaddr* address() const { return reinterpret_cast<const sockaddr*>(&address_); }

    void listenFor(int connections) {
        server_ = FileDescriptor(socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0));
        ASSERT_EQ(bind(server_.number(), address(), sizeof address_), 0);
        ASSERT_EQ(listen(server_.number(), connections), 0);
    }

    /// A compositor that says these bytes to the first who connects and leaves.
    std::jthread saying(std::string_view bytes) {
        listenFor(1);
        return std::jthread([this, bytes] {
            const FileDescriptor client(accept(server_.number(), nullptr, nullptr));
            EXPECT_EQ(send(client.number(), bytes.data(), bytes.size(), MSG_NOSIGNAL),
                      static_cast<ssize_t>(bytes.size()));
        });
    }

    ScratchFolder folder_;
    std::string path_;
    sockaddr_un address_{.sun_family = AF_UNIX, .sun_path = {}};
    FileDescriptor server_;
};

TEST_F(CompositorInterfaces, areNoneWithoutACompositor) {
    EXPECT_TRUE(compositorInterfaces(1h).empty());
}

TEST_F(CompositorInterfaces, areNoneWhereThePathIsTooLongForASocket) {
    setenv("WAYLAND_DISPLAY", ("/" + std::string(200, 'x')).c_str(), 1);
    EXPECT_TRUE(compositorInterfaces(1h).empty());
}

TEST_F(CompositorInterfaces, areGivenUpWhenTheCompositorDoesNotAnswer) {
    listenFor(1);
    EXPECT_TRUE(compositorInterfaces(20ms).empty());
}

TEST_F(CompositorInterfaces, areGivenUpWhenTheCompositorTakesNoMoreConnections) {
    listenFor(0);
    std::vector<FileDescriptor> others;
    do {
        others.emplace_back(socket(AF_UNIX, SOCK_STREAM | SOCK_NONBLOCK | SOCK_CLOEXEC, 0));
    } while (connect(others.back().number(), address(), sizeof address_) == 0);
    EXPECT_TRUE(compositorInterfaces(1h).empty());
}

TEST_F(CompositorInterfaces, areGivenUpWhenTheCompositorLeaves) {
    const std::jthread server = saying("");
    EXPECT_TRUE(compositorInterfaces(1h).empty());
}

TEST_F(CompositorInterfaces, areGivenUpWhenTheCompositorSpeaksRubbish) {
    const std::jthread server = saying("nothing of the protocol at all");
    EXPECT_TRUE(compositorInterfaces(1h).empty());
}

TEST_F(CompositorInterfaces, areNotAskedForOverAConnectionThatIsTheToolkits) {
    listenFor(0);
    setenv("WAYLAND_SOCKET", "3", 1);
    EXPECT_TRUE(compositorInterfaces(1h).empty());
    unsetenv("WAYLAND_SOCKET");
}

} // namespace
} // namespace vigilo::platform
