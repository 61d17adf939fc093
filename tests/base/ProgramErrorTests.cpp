#include "base/ProgramError.h"

#include <gtest/gtest.h>

#include <csignal>

namespace snapvane {

TEST(ProgramErrorDeathTest, AbortsWithTheMessageAndTheCallersPlace) {
    EXPECT_EXIT(programError("a wheel is missing"), ::testing::KilledBySignal(SIGABRT),
                "^Program error: a wheel is missing \\(.*ProgramErrorTests\\.cpp:[0-9]+, .*\\)");
}

TEST(ProgramErrorDeathTest, TakesAMessageWithoutATerminatingZero) {
    const std::string_view text = "only this, not that";
    EXPECT_EXIT(programError(text.substr(0, 9)), ::testing::KilledBySignal(SIGABRT),
                "^Program error: only this \\(");
}

} // namespace snapvane
