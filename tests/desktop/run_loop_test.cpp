#include "desktop/loop/qt_run_loop.h"

#include <QAbstractEventDispatcher>
#include <QCoreApplication>
#include <QTest>
#include <QTimer>

#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <thread>
#include <vector>

namespace glimra::desktop {
namespace {

using namespace std::chrono_literals;
using platform::Time;
using platform::TimerId;

// What is due is due already when the loop begins to serve, wherever that can be, so that these tests wait
// for next to nothing and depend on no machine's speed.

TEST(QtRunLoop, ServesByTimeThenByCreation) {
    QtRunLoop loop;
    std::string order;
    loop.after(200ms, [&] { order += 'c'; });
    loop.post([&] { order += 'a'; });
    loop.after(1ms, [&] { order += 'b'; });
    loop.after(200ms, [&] { order += 'd'; });
    const Time deadline = loop.now() + 200ms;
    loop.after(200ms, [&] { order += 'x'; });
    std::this_thread::sleep_for(210ms);

    EXPECT_TRUE(loop.runUntil(deadline));
    EXPECT_EQ(order, "abcd");
    // The last is due by now, but behind the deadline: not in this wait.
    EXPECT_TRUE(loop.runUntil(deadline));
    EXPECT_EQ(order, "abcd");
}

TEST(QtRunLoop, ARepeatingTimerKeepsItsGridAndNeverRunsInsideItself) {
    QtRunLoop loop;
    constexpr auto kPeriod = 5ms;
    std::vector<std::int64_t> gridPoints;
    int depth = 0;
    int otherRuns = 0;
    const Time before = loop.now();
    loop.repeat(kPeriod, [&] {
        EXPECT_EQ(++depth, 1);
        gridPoints.push_back((loop.now() - before) / kPeriod);
        if (gridPoints.size() == 1) {
            EXPECT_TRUE(loop.runUntil(loop.now() + 2 * kPeriod));
        }
        if (gridPoints.size() == 2)
            std::this_thread::sleep_for(2 * kPeriod + 1ms);
        --depth;
    });
    loop.repeat(1ms, [&] { otherRuns += depth; });
    while (gridPoints.size() < 5 && loop.now() < before + 10s)
        EXPECT_TRUE(loop.runUntil(loop.now() + kPeriod));

    // Each point at most once, and what passed inside an action is skipped, not made up for.
    ASSERT_GE(gridPoints.size(), 5U);
    EXPECT_GE(gridPoints[0], 1);
    EXPECT_GE(gridPoints[1], gridPoints[0] + 2);
    EXPECT_GE(gridPoints[2], gridPoints[1] + 2);
    for (std::size_t i = 1; i < gridPoints.size(); ++i)
        EXPECT_GT(gridPoints[i], gridPoints[i - 1]);
    EXPECT_GE(otherRuns, 1) << "other timers run while one of them waits";
}

TEST(QtRunLoop, HeldItServesNothingButJobsAndWhatBeganSince) {
    QtRunLoop loop;
    std::string order;
    loop.after(2ms, [&] { order += 't'; });
    // In the middle of a wait, and for longer than that.
    QTimer::singleShot(0, [&] {
        const QtRunLoop::Hold hold(loop);
        loop.post([&] { order += 'j'; });
        loop.after(1ms, [&] { order += 'n'; });
        EXPECT_TRUE(loop.runUntil(loop.now() + 20ms));
        order += '|';
    });
    EXPECT_TRUE(loop.runUntil(loop.now() + 5ms));
    EXPECT_EQ(order, "jn|t");
}

TEST(QtRunLoop, AWaitThatIsOverDoesNotStopWhatALoopInsideItServes) {
    QtRunLoop loop;
    int wakeUps = 0;
    std::string order;
    // As a menu that opens in the middle of a wait and stays open for longer.
    QTimer::singleShot(0, [&] {
        QEventLoop menu;
        QTimer::singleShot(40ms, &menu, &QEventLoop::quit);
        loop.after(20ms, [&] { order += 't'; });
        QObject::connect(QAbstractEventDispatcher::instance(), &QAbstractEventDispatcher::awake, &menu,
                         [&] { ++wakeUps; });
        menu.exec();
        order += '|';
    });
    EXPECT_TRUE(loop.runUntil(loop.now() + 5ms));
    EXPECT_EQ(order, "t|");
    EXPECT_LT(wakeUps, 20);
}

TEST(QtRunLoop, CancelledTimersAreForgottenAtOnce) {
    QtRunLoop loop;
    std::string order;
    TimerId repeating = 0;
    TimerId victim = 0;
    repeating = loop.repeat(1ms, [&] {
        order += 'r';
        loop.cancel(repeating);
        loop.cancel(victim);
        // Gone also for the wait inside the action that cancelled it.
        EXPECT_TRUE(loop.runUntil(loop.now() + 3ms));
    });
    victim = loop.after(1ms + 500us, [&] { order += 'v'; });
    const TimerId expired = loop.after(0ms, [&] { order += 'o'; });
    std::this_thread::sleep_for(2ms);
    EXPECT_TRUE(loop.runUntil(loop.now() + 5ms));
    loop.cancel(expired);
    loop.cancel(12345);
    EXPECT_EQ(order, "or");
}

TEST(QtRunLoop, PostedJobsKeepTheirOrderAndDoNotWaitForAWaitingOne) {
    QtRunLoop loop;
    constexpr int kJobs = 2000;
    std::vector<int> fromThread;
    bool waited = false;
    loop.post([&] {
        EXPECT_TRUE(loop.runUntil(loop.now() + 1ms));
        waited = !fromThread.empty();
    });
    std::thread poster([&] {
        for (int i = 0; i < kJobs; ++i)
            loop.post([&fromThread, i] { fromThread.push_back(i); });
    });
    poster.join();
    EXPECT_TRUE(loop.runUntil(loop.now() + 2ms));

    EXPECT_TRUE(waited) << "the jobs behind the waiting one ran during its wait";
    ASSERT_EQ(fromThread.size(), static_cast<std::size_t>(kJobs));
    EXPECT_TRUE(std::ranges::is_sorted(fromThread));
}

TEST(QtRunLoop, AfterTerminationEveryWaitReturnsFalseAndNothingStarts) {
    QtRunLoop loop;
    std::string order;
    loop.repeat(1ms, [&] { order += 'r'; });
    loop.post([&] {
        EXPECT_FALSE(loop.runUntil(loop.now() + 1h));
        order += 'i';
        loop.after(0ms, [&] { order += 'x'; });
    });
    loop.post([&] {
        order = "t";
        loop.terminate();
        loop.post([&] { order += 'p'; });
    });
    loop.post([&] { order += 'q'; });
    EXPECT_FALSE(loop.runUntil(loop.now() + 1h));
    EXPECT_TRUE(loop.isTerminated());
    EXPECT_FALSE(loop.runUntil(loop.now() + 1h));
    std::this_thread::sleep_for(2ms);
    QCoreApplication::processEvents();
    EXPECT_EQ(order, "ti");
}

} // namespace
} // namespace glimra::desktop
