#include "actions/FileError.h"

#include "support/QtPrinting.h"

#include <gtest/gtest.h>

namespace snapvane {

TEST(FileError, NamesTheFileAndGivesTheSystemsText) {
    const FileError error(QStringLiteral("/home/me/Pictures/Snapvane/a b.png"),
                          QStringLiteral("No space left on device"));
    EXPECT_EQ(error.localizedDescription(), QStringLiteral("a b.png: No space left on device"));
    EXPECT_STREQ(error.what(), "a b.png: No space left on device");
}

TEST(FileError, TakesTheSystemsOwnTextOfACode) {
    const FileError error(QStringLiteral("/nowhere/folder"),
                          std::make_error_code(std::errc::permission_denied));
    EXPECT_EQ(error.localizedDescription(), QStringLiteral("folder: Permission denied"));
}

TEST(FileError, LeavesPercentSignsInNamesAlone) {
    const FileError error(QStringLiteral("/x/%1 %2.png"), QStringLiteral("%3"));
    EXPECT_EQ(error.localizedDescription(), QStringLiteral("%1 %2.png: %3"));
}

} // namespace snapvane
