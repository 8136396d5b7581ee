#include "platform/qt/QtRunLoop.h"

#include <gtest/gtest.h>

#include <QCoreApplication>

#include <memory>
#include <string>
#include <thread>

namespace vigilo::platform {
namespace {

using namespace std::chrono_literals;

class QtRunLoopTest : public testing::Test {
protected:
    int argumentCount = 1;
    char name[5] = "test";
    char* arguments[2] = {name, nullptr};
    QCoreApplication application{argumentCount, arguments};
    QtRunLoop runLoop;
};

TEST_F(QtRunLoopTest, runsPostedTasksLaterAndInOrder) {
    std::string log;
    runLoop.post([&] { log += "a"; });
    runLoop.post([&] {
        log += "b";
        QCoreApplication::exit();
    });
    EXPECT_EQ(log, "");
    QCoreApplication::exec();
    EXPECT_EQ(log, "ab");
}

TEST_F(QtRunLoopTest, repeatsATimerUntilItsActionInvalidatesIt) {
    int ticks = 0;
    std::shared_ptr<Timer> timer = runLoop.scheduleRepeating(1ms, [&] {
        if (++ticks == 3) {
            timer->invalidate();
            timer->invalidate();
            runLoop.runAfter(20ms, [] { QCoreApplication::exit(); });
        }
    });
    QCoreApplication::exec();
    EXPECT_EQ(ticks, 3);
}

TEST_F(QtRunLoopTest, keepsATimerGoingWhoseHandleIsGone) {
    int ticks = 0;
    runLoop.scheduleRepeating(1ms, [&] {
        if (++ticks == 2) {
            QCoreApplication::exit();
        }
    });
    QCoreApplication::exec();
    EXPECT_EQ(ticks, 2);
}

TEST_F(QtRunLoopTest, runsADelayedTaskOnce) {
    int runs = 0;
    runLoop.runAfter(1ms, [&] { ++runs; });
    runLoop.runAfter(20ms, [] { QCoreApplication::exit(); });
    QCoreApplication::exec();
    EXPECT_EQ(runs, 1);
}

TEST_F(QtRunLoopTest, bringsBackgroundResultsToTheMainThread) {
    const auto mainThread = std::this_thread::get_id();
    std::thread::id worker;
    std::thread::id delivery;
    runLoop.runInBackground([&] {
        worker = std::this_thread::get_id();
        runLoop.post([&] {
            delivery = std::this_thread::get_id();
            QCoreApplication::exit();
        });
    });
    QCoreApplication::exec();
    EXPECT_NE(worker, mainThread);
    EXPECT_EQ(delivery, mainThread);
    EXPECT_TRUE(runLoop.finishBackgroundWork(10s));
}

} // namespace
} // namespace vigilo::platform
