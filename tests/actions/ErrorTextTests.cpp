#include "actions/ErrorText.h"

#include "base/LocalizedError.h"
#include "support/QtPrinting.h"

#include <gtest/gtest.h>

namespace snapvane {

namespace {

template <typename Error> QString textOf(const Error& error) {
    try {
        throw error;
    } catch (...) {
        return currentErrorText();
    }
}

struct OwnError : LocalizedError {
    using LocalizedError::LocalizedError;
};

} // namespace

TEST(CurrentErrorText, IsTheDescriptionForTheUser) {
    const QString text = QStringLiteral("Kein Netz \u00b7 %1");
    EXPECT_EQ(textOf(LocalizedError(text)), text);
    EXPECT_EQ(textOf(OwnError(text)), text);
}

TEST(CurrentErrorText, IsWhatAnyOtherExceptionSays) {
    EXPECT_EQ(textOf(std::runtime_error("out of l\u00fcck")), QStringLiteral("out of l\u00fcck"));
}

TEST(CurrentErrorText, IsSomethingForWhatIsNoException) {
    EXPECT_EQ(textOf(7), QStringLiteral("The operation could not be completed."));
}

TEST(CurrentErrorText, IsNeverNull) {
    EXPECT_FALSE(textOf(std::runtime_error("")).isNull());
    EXPECT_FALSE(textOf(LocalizedError(QString())).isNull());
}

} // namespace snapvane
