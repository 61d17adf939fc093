// The card against pictures of it that were looked at and found good. With SNAPVANE_KEEP_PICTURES
// set, the pictures are made anew instead: look at them before they are kept.

#include "choice/ChoicePictures.h"

#include <gtest/gtest.h>

#include <QDir>
#include <QFont>
#include <QGuiApplication>

namespace snapvane {

namespace {

using testing::ChoicePicture;

// Text is drawn a little differently by other versions of the font library; nothing else may be.
constexpr double toleratedMean = 0.6;
constexpr double toleratedStrikingPart = 0.004;

QString file(const QString& folder, const ChoicePicture& picture) {
    QDir().mkpath(folder);
    return QDir(folder).filePath(QStringLiteral("choice-%1.png").arg(picture.name()));
}

class ChoiceReference : public ::testing::TestWithParam<ChoicePicture> {
protected:
    ChoiceReference() { QGuiApplication::setFont(QFont(QStringLiteral("DejaVu Sans"))); }
};

} // namespace

INSTANTIATE_TEST_SUITE_P(Choice, ChoiceReference, ::testing::ValuesIn(testing::choicePictures()),
                         [](const auto& picture) {
                             return picture.param.name()
                                 .replace(QLatin1Char('-'), QLatin1Char('_'))
                                 .replace(QLatin1Char('.'), QLatin1Char('_'))
                                 .toStdString();
                         });

TEST_P(ChoiceReference, LooksAsItDid) {
    const QImage actual = testing::render(GetParam());
    const QString kept = file(QStringLiteral(SNAPVANE_REFERENCE_FOLDER), GetParam());
    if (qEnvironmentVariableIsSet("SNAPVANE_KEEP_PICTURES")) {
        ASSERT_TRUE(actual.save(kept));
    }
    const QImage expected(kept);
    ASSERT_FALSE(expected.isNull()) << "There is no picture to compare with.";
    const auto difference = testing::compare(expected, actual);
    const bool isAlike =
        difference.mean <= toleratedMean && difference.strikingPart <= toleratedStrikingPart;
    if (!isAlike) {
        actual.save(file(QStringLiteral(SNAPVANE_REPORTS_FOLDER), GetParam()));
    }
    EXPECT_TRUE(isAlike) << "mean " << difference.mean << ", striking " << difference.strikingPart;
}

TEST(ChoiceReferenceTolerance, IsTooSmallForAChangedColourOfOneRow) {
    ChoicePicture picture;
    const QImage plain = testing::render(picture);
    picture.hoveredRow = 2;
    const auto difference = testing::compare(plain, testing::render(picture));
    EXPECT_GT(difference.mean, toleratedMean);
}

TEST(ChoiceReferenceTolerance, IsTooSmallForAShiftOfOnePoint) {
    const QImage plain = testing::render({});
    const QImage shifted = plain.copy(1, 0, plain.width(), plain.height());
    const auto difference = testing::compare(plain, shifted);
    EXPECT_TRUE(difference.mean > toleratedMean || difference.strikingPart > toleratedStrikingPart);
}

} // namespace snapvane
