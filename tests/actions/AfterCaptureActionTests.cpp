#include "actions/AfterCaptureAction.h"

#include "support/QtPrinting.h"

#include <gtest/gtest.h>

namespace snapvane {

namespace {

struct Row {
    AfterCaptureAction action;
    QString rawValue;
    QString word;
    QString label;
};

/// In the order in which they are listed everywhere.
const Row rows[] = {{AfterCaptureAction::copyToClipboard, QStringLiteral("copyToClipboard"),
                     QStringLiteral("copy"), QStringLiteral("Copy image to clipboard")},
                    {AfterCaptureAction::uploadFerrybox, QStringLiteral("uploadFerrybox"),
                     QStringLiteral("upload"), QStringLiteral("Upload to Ferrybox (copy link)")},
                    {AfterCaptureAction::saveToFolder, QStringLiteral("saveToFolder"),
                     QStringLiteral("save"), QStringLiteral("Save PNG to folder")}};

} // namespace

TEST(AfterCaptureAction, HasItsNamesAndTexts) {
    for (const Row& row : rows) {
        SCOPED_TRACE(row.rawValue.toStdString());
        EXPECT_EQ(rawValue(row.action), row.rawValue);
        EXPECT_EQ(titleWord(row.action), row.word);
        EXPECT_EQ(settingsLabel(row.action), row.label);
        EXPECT_EQ(afterCaptureActionOfRawValue(row.rawValue), row.action);
    }
}

TEST(AfterCaptureAction, AreListedInTheirOrder) {
    ASSERT_EQ(allAfterCaptureActions.size(), std::size(rows));
    for (std::size_t i = 0; i < std::size(rows); ++i) {
        EXPECT_EQ(allAfterCaptureActions.at(i), rows[i].action);
    }
}

TEST(AfterCaptureAction, OtherNamesAreNone) {
    for (const char* name : {"", "copytoclipboard", "CopyToClipboard", " copyToClipboard",
                             "copyToClipboard ", "copy", "askMe", "save-to-folder"}) {
        EXPECT_EQ(afterCaptureActionOfRawValue(QString::fromLatin1(name)), std::nullopt) << name;
    }
    EXPECT_EQ(afterCaptureActionOfRawValue(QString()), std::nullopt);
}

} // namespace snapvane
