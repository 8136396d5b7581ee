#include "platform/linux/BackgroundWorker.h"

#include <gtest/gtest.h>

#include <atomic>
#include <future>
#include <memory>
#include <string>
#include <thread>

#include <sys/resource.h>
#include <unistd.h>

namespace vigilo::platform {
namespace {

using namespace std::chrono_literals;

TEST(BackgroundWorker, runsTasksInOrderOnAThreadOfItsOwn) {
    BackgroundWorker worker;
    auto log = std::make_shared<std::string>();
    std::promise<std::thread::id> thread;
    worker.run([log] { *log += "a"; });
    worker.run([log] { *log += "b"; });
    worker.run([&thread] { thread.set_value(std::this_thread::get_id()); });
    EXPECT_NE(thread.get_future().get(), std::this_thread::get_id());
    EXPECT_EQ(*log, "ab");
}

TEST(BackgroundWorker, givesWayToEverythingElse) {
    BackgroundWorker worker;
    std::promise<int> nice;
    worker.run([&nice] { nice.set_value(getpriority(PRIO_PROCESS, static_cast<id_t>(gettid()))); });
    EXPECT_GE(nice.get_future().get(), 10);
}

TEST(BackgroundWorker, finishesTheTaskUnderWayAndDropsTheOthers) {
    BackgroundWorker worker;
    std::promise<void> begun;
    std::promise<void> mayEnd;
    auto later = std::make_shared<std::atomic<bool>>(false);
    worker.run([&] {
        begun.set_value();
        mayEnd.get_future().wait();
    });
    worker.run([later] { *later = true; });
    begun.get_future().wait();
    EXPECT_FALSE(worker.finish(0ms));
    mayEnd.set_value();
    EXPECT_TRUE(worker.finish(10s));
    worker.run([later] { *later = true; });
    EXPECT_TRUE(worker.finish(10s));
    EXPECT_FALSE(*later);
}

TEST(BackgroundWorker, dropsTasksThatOwnWhatUsesItAtItsEnd) {
    BackgroundWorker worker;
    std::promise<void> begun;
    std::promise<void> mayEnd;
    worker.run([&] {
        begun.set_value();
        mayEnd.get_future().wait();
    });
    begun.get_future().wait();
    bool hasEnded = false;
    worker.run([owned = std::shared_ptr<void>(nullptr, [&](void*) {
                    worker.run([] {});
                    hasEnded = true;
                })] {});
    EXPECT_FALSE(worker.finish(0ms));
    EXPECT_TRUE(hasEnded);
    mayEnd.set_value();
    EXPECT_TRUE(worker.finish(10s));
}

TEST(BackgroundWorker, mayGoWhileATaskIsStuck) {
    auto mayEnd = std::make_shared<std::promise<void>>();
    auto ended = std::make_shared<std::promise<void>>();
    {
        BackgroundWorker worker;
        auto begun = std::make_shared<std::promise<void>>();
        worker.run([begun, mayEnd, ended] {
            begun->set_value();
            mayEnd->get_future().wait();
            ended->set_value();
        });
        begun->get_future().wait();
    }
    mayEnd->set_value();
    ended->get_future().wait();
}

} // namespace
} // namespace vigilo::platform
