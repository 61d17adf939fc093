#include "base/Async.h"

#include "Await.h"
#include "base/LocalizedError.h"

#include <gtest/gtest.h>

#include <QThread>
#include <QTimer>

#include <csignal>

namespace snapvane {

namespace {

class OwnError : public LocalizedError {
public:
    explicit OwnError(int codeNumber)
        : LocalizedError(QStringLiteral("own error")), code(codeNumber) {}

    int code;
};

QCoro::Task<> throwAtOnce() {
    throw OwnError(1);
    co_return;
}

QCoro::Task<> throwAfterBackgroundWork() {
    auto work = runInBackground([] { return 1; });
    co_await work;
    throw OwnError(2);
}

QCoro::Task<> throwNoException() {
    throw 42;
    co_return;
}

QCoro::Task<> finishLater(bool* finished) {
    auto work = runInBackground([] { return true; });
    *finished = co_await work;
}

QCoro::Task<Qt::HANDLE> threadAfterWork() {
    auto work = runInBackground([] { return 1; });
    co_await work;
    co_return QThread::currentThreadId();
}

/// Ends the child when nothing else does.
void runEventLoopForAWhile() {
    QEventLoop loop;
    QTimer::singleShot(std::chrono::seconds(5), &loop, &QEventLoop::quit);
    loop.exec();
}

} // namespace

TEST(Async, GivesTheResultOfTheWork) {
    EXPECT_EQ(await(runInBackground([] { return QStringLiteral("done"); })),
              QStringLiteral("done"));
}

TEST(Async, ThrowsWhatTheWorkThrew) {
    try {
        await(runInBackground([]() -> int { throw OwnError(17); }));
        FAIL() << "nothing was thrown";
    } catch (const OwnError& error) {
        EXPECT_EQ(error.code, 17);
        EXPECT_EQ(error.localizedDescription(), QStringLiteral("own error"));
        EXPECT_STREQ(error.what(), "own error");
    }
    EXPECT_THROW(await(runInBackground([]() -> int { throw 5; })), int);
}

TEST(Async, WorksOffTheMainThread) {
    const Qt::HANDLE main = QThread::currentThreadId();
    EXPECT_NE(await(runInBackground([] { return QThread::currentThreadId(); })), main);
}

TEST(Async, ResumesOnTheMainThread) {
    EXPECT_EQ(await(threadAfterWork()), QThread::currentThreadId());
}

TEST(Async, LetsTheMainThreadGoOnMeanwhile) {
    std::atomic<bool> mayEnd = false;
    auto work = runInBackground([&mayEnd] {
        while (!mayEnd) {
            QThread::msleep(1);
        }
        return true;
    });
    QTimer::singleShot(0, [&mayEnd] { mayEnd = true; });
    EXPECT_TRUE(await(std::move(work)));
}

TEST(Async, RunsADetachedTaskToItsEnd) {
    bool finished = false;
    startDetached(finishLater(&finished));
    for (int i = 0; i < 1000 && !finished; ++i) {
        QCoreApplication::processEvents();
        QThread::msleep(10);
    }
    EXPECT_TRUE(finished);
}

TEST(AsyncDeathTest, AnExceptionThatLeavesADetachedTaskIsAProgramError) {
    // A forked child would count on pool threads that only its parent has.
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    EXPECT_EXIT(startDetached(throwAtOnce()), ::testing::KilledBySignal(SIGABRT),
                "Program error: own error");
    EXPECT_EXIT(
        {
            startDetached(throwAfterBackgroundWork());
            runEventLoopForAWhile();
        },
        ::testing::KilledBySignal(SIGABRT), "Program error: own error");
}

TEST(AsyncDeathTest, SoIsSomethingThrownThatIsNoException) {
    EXPECT_EXIT(startDetached(throwNoException()), ::testing::KilledBySignal(SIGABRT),
                "Program error");
}

TEST(BackgroundPool, IsNotWhatQtPaintsWith) {
    EXPECT_NE(&backgroundPool(), QThreadPool::globalInstance());
    EXPECT_EQ(&backgroundPool(), &backgroundPool());
    EXPECT_GE(backgroundPool().maxThreadCount(), 4);
}

} // namespace snapvane
