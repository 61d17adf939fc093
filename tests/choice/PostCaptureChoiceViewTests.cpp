#include "choice/PostCaptureChoiceView.h"

#include "base/TestPalette.h"
#include "choice/ChoiceActionRow.h"
#include "choice/ChoiceThumbnail.h"
#include "support/QtPrinting.h"

#include <gtest/gtest.h>

#include <QLabel>

using namespace Qt::StringLiterals;

namespace snapvane {

namespace {

PlatformImage picture() {
    QImage bitmap(720, 280, QImage::Format_RGB32);
    bitmap.fill(Qt::darkCyan);
    return {bitmap, {720, 280}};
}

struct RowText {
    PostCaptureChoiceSymbol symbol;
    const char* title;
    const char* subtitle;
    const char* keyHint;
    const char* helpText;
    bool isDestructive;
};

const RowText rowTexts[] = {{PostCaptureChoiceSymbol::clipboard, "Copy", "Image to clipboard", "1",
                             "Copy image to clipboard", false},
                            {PostCaptureChoiceSymbol::upload, "Upload to Ferrybox",
                             "Copy public link", "2", "Upload PNG and copy link to clipboard",
                             false},
                            {PostCaptureChoiceSymbol::folder, "Save PNG", "To chosen folder", "3",
                             "Save PNG to the folder in Settings", false},
                            {PostCaptureChoiceSymbol::savedDefaults, "Saved defaults", "copy, save",
                             "4 \u00b7 \u21a9", "Saved defaults (copy, save)", false},
                            {PostCaptureChoiceSymbol::cancel, "Cancel", "Discard this prompt",
                             "Esc", "Close without running an action", true}};

class PostCaptureChoiceViewTest : public ::testing::Test {
protected:
    // Lays the parts out.
    PostCaptureChoiceViewTest() { m_view.grab(); }

    PostCaptureChoiceView::Contents contents() {
        return {picture(), u"Saved defaults (copy, save)"_s,
                [this](PostCaptureMenuAction action) { m_selected.push_back(action); },
                [this] { ++m_cancelled; }};
    }

    std::vector<PostCaptureMenuAction> m_selected;
    int m_cancelled = 0;
    PostCaptureChoiceView m_view{contents()};
};

struct Subtitle {
    const char* name;
    const char* title;
    const char* subtitle;
};

class SavedDefaultsSubtitle : public ::testing::TestWithParam<Subtitle> {};

} // namespace

TEST_F(PostCaptureChoiceViewTest, HasItsRowsInOrder) {
    ASSERT_EQ(m_view.rows().size(), std::size(rowTexts));
    int below = 0;
    for (std::size_t i = 0; i < std::size(rowTexts); ++i) {
        const ChoiceActionRow& row = *m_view.rows()[i];
        const RowText& expected = rowTexts[i];
        SCOPED_TRACE(expected.title);
        EXPECT_EQ(row.contents().symbol, expected.symbol);
        EXPECT_EQ(row.contents().title, QString::fromUtf8(expected.title));
        EXPECT_EQ(row.contents().subtitle, QString::fromUtf8(expected.subtitle));
        EXPECT_EQ(row.contents().keyHint, QString::fromUtf8(expected.keyHint));
        EXPECT_EQ(row.contents().helpText, QString::fromUtf8(expected.helpText));
        EXPECT_EQ(row.contents().isDestructive, expected.isDestructive);
        EXPECT_TRUE(row.isEnabled());
        const int top = row.mapTo(&m_view, QPoint(0, 0)).y();
        EXPECT_GT(top, below);
        below = top;
    }
}

TEST_F(PostCaptureChoiceViewTest, ClicksReportTheRowsAction) {
    for (ChoiceActionRow* row : m_view.rows()) {
        row->click();
    }
    using Action = PostCaptureMenuAction;
    EXPECT_EQ(m_selected, (std::vector{Action::copyToClipboard, Action::uploadFerrybox,
                                       Action::saveToFolder, Action::runSavedDefaults}));
    EXPECT_EQ(m_cancelled, 1);
}

TEST_F(PostCaptureChoiceViewTest, IsAsWideAsStatedAndAsHighAsItsContents) {
    EXPECT_EQ(m_view.width(), 420);
    const int rowHeight = m_view.rows().front()->height();
    const auto* heading = m_view.findChild<QLabel*>();
    ASSERT_NE(heading, nullptr);
    EXPECT_EQ(m_view.height(),
              22 + heading->height() + 18 + 140 + 18 + 5 * rowHeight + 4 * 10 + 22);
}

TEST_F(PostCaptureChoiceViewTest, LaysItsPartsOutAtTheStatedDistances) {
    const auto* heading = m_view.findChild<QLabel*>();
    EXPECT_EQ(heading->text(), u"After capture"_s);
    EXPECT_EQ(heading->font().pixelSize(), 15);
    EXPECT_EQ(heading->font().weight(), QFont::DemiBold);
    EXPECT_EQ(heading->y(), 22);
    const QRect thumbnail = m_view.thumbnail().geometry();
    EXPECT_EQ(thumbnail, QRect(30, 22 + heading->height() + 18, 360, 140));
    int top = thumbnail.y() + thumbnail.height() + 18;
    for (const ChoiceActionRow* row : m_view.rows()) {
        EXPECT_EQ(QRect(row->mapTo(&m_view, QPoint(0, 0)), row->size()),
                  QRect(22, top, 376, row->height()));
        top += row->height() + 10;
    }
}

TEST_F(PostCaptureChoiceViewTest, IsARoundedPlateOfTheWindowColour) {
    for (const QColor& window : {QColor(0xee, 0xee, 0xee), QColor(0x30, 0x30, 0x30)}) {
        const TestPalette palette(window.lightness() > 128 ? Qt::black : Qt::white, window);
        PostCaptureChoiceView view(contents());
        QImage image(view.size(), QImage::Format_ARGB32_Premultiplied);
        image.fill(Qt::transparent);
        view.render(&image, {}, {}, QWidget::DrawChildren);
        EXPECT_EQ(image.pixelColor(0, 0).alpha(), 0);
        // Within the corner's square, outside its circle: 20 − 20 / √2 is just under 6.
        EXPECT_EQ(image.pixelColor(4, 4).alpha(), 0);
        EXPECT_EQ(image.pixelColor(8, 8), window);
        EXPECT_EQ(image.pixelColor(210, 5), window);
    }
}

TEST_F(PostCaptureChoiceViewTest, ShrinksTheThumbnailForALowScreen) {
    const int full = m_view.height();
    m_view.limitHeight(full);
    EXPECT_EQ(m_view.thumbnail().sizeHint(), QSize(360, 140));
    m_view.limitHeight(full - 60);
    EXPECT_EQ(m_view.height(), full - 60);
    EXPECT_EQ(m_view.thumbnail().sizeHint(), QSize(206, 80));
    EXPECT_FALSE(m_view.thumbnail().isHidden());
}

TEST_F(PostCaptureChoiceViewTest, LeavesTheThumbnailOutForAVeryLowScreen) {
    const int full = m_view.height();
    m_view.limitHeight(full - 150);
    EXPECT_TRUE(m_view.thumbnail().isHidden());
    EXPECT_EQ(m_view.height(), full - 140 - 18);
    m_view.limitHeight(100);
    EXPECT_EQ(m_view.height(), full - 140 - 18) << "The rows stay as they are.";
}

INSTANTIATE_TEST_SUITE_P(
    PostCaptureChoiceView, SavedDefaultsSubtitle,
    ::testing::Values(Subtitle{"Two", "Saved defaults (copy, upload)", "copy, upload"},
                      Subtitle{"One", "Saved defaults (save)", "save"},
                      Subtitle{"None", "Saved defaults (none selected)", "none selected"},
                      Subtitle{"OtherTitle", "Defaults", "None selected in Settings"},
                      Subtitle{"NoTitle", "", "None selected in Settings"},
                      Subtitle{"OtherCase", "saved defaults (copy)", "None selected in Settings"},
                      Subtitle{"PrefixAlone", "Saved defaults (", ""},
                      Subtitle{"NoParenthesis", "Saved defaults (copy", "cop"},
                      Subtitle{"Parenthesis", "Saved defaults ()", ""}),
    [](const auto& subtitle) { return subtitle.param.name; });

TEST_P(SavedDefaultsSubtitle, IsWhatStandsInTheParentheses) {
    EXPECT_EQ(PostCaptureChoiceView::savedDefaultsSubtitle(QString::fromUtf8(GetParam().title)),
              QString::fromUtf8(GetParam().subtitle));
}

} // namespace snapvane
