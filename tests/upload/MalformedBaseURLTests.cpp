// A program of its own: it was built with an address that is none.

#include "upload/FerryboxBaseURL.h"

#include <gtest/gtest.h>

#include <csignal>

namespace snapvane {

const char ferryboxBaseURLText[] = "ftp://ferrybox.example";

TEST(MalformedBaseURLDeathTest, EndsTheProgram) {
    EXPECT_EXIT(ferryboxBaseURL(), ::testing::KilledBySignal(SIGABRT),
                "^Program error: the address of the upload service is malformed");
}

} // namespace snapvane
