#include "app/TerminationSignals.h"

#include "selection/SessionFakes.h"

#include <QThread>

#include <gmock/gmock.h>

#include <csignal>
#include <thread>

namespace snapvane {

namespace {

class TerminationSignalsTest : public ::testing::TestWithParam<int> {};

TEST_P(TerminationSignalsTest, BecomeACallOnTheMainThread) {
    std::vector<QThread*> calls;
    {
        const TerminationSignals signals([&] { calls.push_back(QThread::currentThread()); });
        EXPECT_EQ(raise(GetParam()), 0);
        EXPECT_TRUE(calls.empty()) << "not in the middle of whatever was running";
        testing::settle();
        EXPECT_THAT(calls, ::testing::ElementsAre(QCoreApplication::instance()->thread()));
        testing::settle();
        EXPECT_EQ(calls.size(), 1U);
        // A signal that arrives on another thread comes here as well.
        std::thread([] { raise(GetParam()); }).join();
        testing::settle();
        EXPECT_EQ(calls.size(), 2U);
        EXPECT_EQ(calls.back(), QCoreApplication::instance()->thread());
    }
    struct sigaction now = {};
    sigaction(GetParam(), nullptr, &now);
    EXPECT_EQ(now.sa_handler, SIG_DFL);
}

INSTANTIATE_TEST_SUITE_P(Both, TerminationSignalsTest, ::testing::Values(SIGTERM, SIGINT));

TEST(TerminationSignals, CanBeMadeAgain) {
    for (int round = 0; round < 3; ++round) {
        int calls = 0;
        const TerminationSignals signals([&calls] { ++calls; });
        raise(SIGTERM);
        testing::settle();
        EXPECT_EQ(calls, 1) << round;
    }
}

} // namespace

} // namespace snapvane
