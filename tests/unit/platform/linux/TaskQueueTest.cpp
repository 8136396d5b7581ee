#include "platform/linux/TaskQueue.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <thread>
#include <vector>

#include <poll.h>

namespace vigilo::platform {
namespace {

bool isReadable(const TaskQueue& queue) {
    pollfd watched{.fd = queue.descriptor(), .events = POLLIN, .revents = 0};
    return poll(&watched, 1, 0) == 1;
}

TEST(TaskQueue, runsTasksInOrderOneACall) {
    TaskQueue queue;
    std::string log;
    queue.push([&] { log += "a"; });
    queue.push([&] { log += "b"; });
    queue.runNext();
    EXPECT_EQ(log, "a");
    queue.runNext();
    EXPECT_EQ(log, "ab");
    queue.runNext();
    EXPECT_EQ(log, "ab");
}

TEST(TaskQueue, isReadableWhileATaskWaits) {
    TaskQueue queue;
    EXPECT_FALSE(isReadable(queue));
    queue.push([] {});
    queue.push([] {});
    queue.runNext();
    EXPECT_TRUE(isReadable(queue));
    queue.runNext();
    EXPECT_FALSE(isReadable(queue));
}

TEST(TaskQueue, letsATaskRunTheOnesBehindIt) {
    TaskQueue queue;
    std::string log;
    queue.push([&] {
        queue.runNext();
        log += "a";
    });
    queue.push([&] { log += "b"; });
    queue.runNext();
    EXPECT_EQ(log, "ba");
}

TEST(TaskQueue, dropsWhatWaitsWithWhatItOwns) {
    TaskQueue queue;
    const auto owned = std::make_shared<int>(1);
    queue.push([owned] {});
    queue.push([owned] {});
    queue.clear();
    EXPECT_EQ(owned.use_count(), 1);
    EXPECT_FALSE(isReadable(queue));
    queue.runNext();
}

TEST(TaskQueue, takesTasksFromManyThreads) {
    TaskQueue queue;
    int runs = 0;
    constexpr std::size_t threadCount = 4;
    std::vector<std::thread> threads;
    threads.reserve(threadCount);
    for (std::size_t count = 0; count < threadCount; ++count) {
        threads.emplace_back([&] {
            for (int task = 0; task < 100; ++task) {
                queue.push([&runs] { ++runs; });
            }
        });
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
    while (isReadable(queue)) {
        queue.runNext();
    }
    EXPECT_EQ(runs, 400);
}

} // namespace
} // namespace vigilo::platform
