// The card against pictures of it that were looked at and found good. With SNAPVANE_KEEP_PICTURES
// set, the pictures are made anew instead: look at them before they are kept.

#include "choice/ChoicePictures.h"

#include <gtest/gtest.h>

#include <QDir>
#include <QFont>
#include <QGuiApplication>
#include <QPainter>

namespace snapvane {

namespace {

using testing::ChoicePicture;

// Text is drawn a little differently by other versions of the font library; nothing else may be.
constexpr double toleratedMean = 0.3;
constexpr double toleratedTile = 8;

QString file(const QString& folder, const ChoicePicture& picture) {
    QDir().mkpath(folder);
    return QDir(folder).filePath(QStringLiteral("choice-%1.png").arg(picture.name()));
}

bool isTolerated(const testing::Difference& difference) {
    return difference.mean <= toleratedMean && difference.worstTile <= toleratedTile;
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
    const bool isAlike = isTolerated(difference);
    if (!isAlike) {
        actual.save(file(QStringLiteral(SNAPVANE_REPORTS_FOLDER), GetParam()));
    }
    EXPECT_TRUE(isAlike) << "mean " << difference.mean << ", worst tile " << difference.worstTile;
}

TEST(ChoiceReferenceTolerance, IsTooSmallForAChangedColourOfOneRow) {
    ChoicePicture picture;
    const QImage plain = testing::render(picture);
    picture.hoveredRow = 2;
    EXPECT_FALSE(isTolerated(testing::compare(plain, testing::render(picture))));
}

TEST(ChoiceReferenceTolerance, IsTooSmallForAShiftOfOnePoint) {
    const QImage plain = testing::render({});
    const QImage shifted = plain.copy(1, 0, plain.width(), plain.height());
    EXPECT_FALSE(isTolerated(testing::compare(plain, shifted)));
}

TEST(ChoiceReferenceTolerance, IsTooSmallForAMissingPart) {
    const QImage plain = testing::render({});
    // The heading; and icon, title and key hint of the first row.
    for (const QRect& part : {QRect(190, 100, 120, 24), QRect(76, 245, 36, 36),
                              QRect(125, 240, 60, 24), QRect(395, 250, 30, 24)}) {
        QImage without = plain;
        const QColor ground = plain.pixelColor(part.topLeft());
        QPainter(&without).fillRect(part, ground);
        EXPECT_FALSE(isTolerated(testing::compare(plain, without))) << part.x() << ", " << part.y();
    }
}

} // namespace snapvane
