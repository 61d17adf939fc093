#include "base/MainLoopWatchdog.h"

#include <gtest/gtest.h>

#include <QElapsedTimer>
#include <QEventLoop>

#include <csignal>
#include <cstdlib>
#include <thread>
#include <unistd.h>

namespace snapvane {

namespace {

using namespace std::chrono_literals;
using ::testing::ExitedWithCode;

constexpr auto limit = 400ms;
// Long enough for the watchdog to strike even when the machine is busy.
constexpr auto manyLimits = 3 * limit;

void runEventLoopFor(std::chrono::milliseconds duration) {
    QEventLoop loop;
    QTimer::singleShot(duration, &loop, &QEventLoop::quit);
    loop.exec();
}

/// Stops this process, as Ctrl+Z does, and has a helper continue it later.
void stopAndContinueAfter(std::chrono::milliseconds duration) {
    const pid_t stopped = getpid();
    if (fork() == 0) {
        usleep(static_cast<useconds_t>(std::chrono::microseconds(duration).count()));
        kill(stopped, SIGCONT);
        _exit(0);
    }
    raise(SIGSTOP);
}

} // namespace

TEST(MainLoopWatchdogDeathTest, EndsAProgramWhoseMainLoopHangs) {
    QElapsedTimer clock;
    clock.start();
    EXPECT_EXIT(
        {
            const MainLoopWatchdog watchdog(limit);
            std::this_thread::sleep_for(20s);
            std::_Exit(0);
        },
        ExitedWithCode(EXIT_FAILURE), "\\[Watchdog\\] error: The main loop hangs");
    EXPECT_GE(clock.elapsed(), (limit * 3 / 4).count());
    EXPECT_LT(clock.elapsed(), 10'000);
}

TEST(MainLoopWatchdogDeathTest, EndsAProgramThatHangsAfterAWhile) {
    EXPECT_EXIT(
        {
            const MainLoopWatchdog watchdog(limit);
            runEventLoopFor(limit);
            std::this_thread::sleep_for(20s);
            std::_Exit(0);
        },
        ExitedWithCode(EXIT_FAILURE), "The main loop hangs");
}

TEST(MainLoopWatchdogDeathTest, LetsAProgramLiveThatMakesProgress) {
    EXPECT_EXIT(
        {
            const MainLoopWatchdog watchdog(limit);
            runEventLoopFor(manyLimits);
            std::_Exit(0);
        },
        ExitedWithCode(0), "");
}

TEST(MainLoopWatchdogDeathTest, LetsAProgramLiveThatPausesForLessThanTheLimit) {
    EXPECT_EXIT(
        {
            const MainLoopWatchdog watchdog(limit);
            for (int i = 0; i < 4; ++i) {
                std::this_thread::sleep_for(limit / 2);
                runEventLoopFor(limit / 2);
            }
            std::_Exit(0);
        },
        ExitedWithCode(0), "");
}

TEST(MainLoopWatchdogDeathTest, TakesAStoppedProgramForNoHangingOne) {
    EXPECT_EXIT(
        {
            const MainLoopWatchdog watchdog(limit);
            runEventLoopFor(limit / 2);
            stopAndContinueAfter(manyLimits);
            runEventLoopFor(limit);
            std::_Exit(0);
        },
        ExitedWithCode(0), "");
}

TEST(MainLoopWatchdogDeathTest, WatchesNoLongerThanItLives) {
    EXPECT_EXIT(
        {
            { const MainLoopWatchdog watchdog(limit); }
            std::this_thread::sleep_for(manyLimits);
            std::_Exit(0);
        },
        ExitedWithCode(0), "");
}

TEST(MainLoopWatchdog, GoesAtOnceHoweverLongItsLimit) {
    QElapsedTimer clock;
    clock.start();
    { const MainLoopWatchdog watchdog(10min); }
    EXPECT_LT(clock.elapsed(), 1000);
}

} // namespace snapvane
