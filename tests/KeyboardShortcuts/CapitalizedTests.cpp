#include "KeyboardShortcuts/Text.h"

#include "support/QtPrinting.h"

#include <gtest/gtest.h>

namespace KeyboardShortcuts {

namespace {

struct Sample {
    const char* name;
    QString text;
    QString capitalized;
};

const Sample samples[] = {
    {"nothing", QString(), QString()},
    {"letter", QStringLiteral("p"), QStringLiteral("P")},
    {"capital", QStringLiteral("P"), QStringLiteral("P")},
    {"word", QStringLiteral("space"), QStringLiteral("Space")},
    {"shouted", QStringLiteral("SPACE"), QStringLiteral("Space")},
    {"words", QStringLiteral("space bar"), QStringLiteral("Space Bar")},
    {"digit", QStringLiteral("7"), QStringLiteral("7")},
    {"punctuation", QStringLiteral("["), QStringLiteral("[")},
    {"sharp_s", QStringLiteral("\u00df"), QStringLiteral("Ss")},
    {"umlaut", QStringLiteral("\u00fc"), QStringLiteral("\u00dc")},
    {"combining", QStringLiteral("e\u0301"), QStringLiteral("E\u0301")},
    {"beyond_16_bits", QStringLiteral("\U00010428"), QStringLiteral("\U00010400")},
    {"replacement", QStringLiteral("\ufffd"), QStringLiteral("\ufffd")},
};

class Capitalized : public ::testing::TestWithParam<Sample> {};

} // namespace

TEST_P(Capitalized, StartsWordsInUpperCase) {
    EXPECT_EQ(capitalized(GetParam().text), GetParam().capitalized);
}

INSTANTIATE_TEST_SUITE_P(Each, Capitalized, ::testing::ValuesIn(samples),
                         [](const auto& test) { return std::string(test.param.name); });

} // namespace KeyboardShortcuts
