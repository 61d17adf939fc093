#include "choice/ChoicePanelColors.h"

#include "base/Contrast.h"
#include "base/Style.h"
#include "base/TestPalette.h"

#include <gtest/gtest.h>

namespace snapvane {

namespace {

using ChoicePanelColors::RowState;

constexpr RowState states[] = {RowState::Idle, RowState::Hovered, RowState::Pressed};

struct Look {
    const char* name = "";
    QColor text;
    QColor window;
};

const Look looks[] = {{"Light", Qt::black, QColor(0xef, 0xef, 0xef)},
                      {"LightGreyText", QColor(0x23, 0x26, 0x29), QColor(0xef, 0xf0, 0xf1)},
                      {"Dark", Qt::white, QColor(0x32, 0x32, 0x32)},
                      {"DarkBlue", QColor(0xfc, 0xfc, 0xfc), QColor(0x2a, 0x2e, 0x32)}};

} // namespace

TEST(ChoicePanelColors, SurfaceIsThatOfWindows) {
    for (const Look& look : looks) {
        const TestPalette palette(look.text, look.window);
        EXPECT_EQ(ChoicePanelColors::surface(), look.window) << look.name;
    }
}

TEST(ChoicePanelColors, IdleRowsAreTintedWithTheTextColour) {
    const TestPalette palette(QColor(10, 20, 30), Qt::white);
    for (const bool isDestructive : {false, true}) {
        const auto colors = ChoicePanelColors::row(RowState::Idle, isDestructive);
        EXPECT_EQ(colors.fill, Style::withOpacity(Style::primary(), 0.06));
        EXPECT_EQ(colors.border, Style::withOpacity(Style::primary(), 0.08));
    }
}

TEST(ChoicePanelColors, HoveredRowsAreTintedWithTheAccent) {
    const TestPalette palette(Qt::black, Qt::white);
    const auto colors = ChoicePanelColors::row(RowState::Hovered, false);
    EXPECT_EQ(colors.fill, Style::withOpacity(Style::accent(), 0.15));
    EXPECT_EQ(colors.border, Style::withOpacity(Style::accent(), 0.45));
}

TEST(ChoicePanelColors, HoveredDestructiveRowsAreTintedRed) {
    const TestPalette palette(Qt::black, Qt::white);
    const auto colors = ChoicePanelColors::row(RowState::Hovered, true);
    EXPECT_EQ(colors.fill, Style::withOpacity(Style::destructive(), 0.12));
    EXPECT_EQ(colors.border, Style::withOpacity(Style::destructive(), 0.45));
}

TEST(ChoicePanelColors, IconAndTitleTellDestructiveRows) {
    const TestPalette palette(Qt::black, Qt::white);
    for (const RowState state : states) {
        EXPECT_EQ(ChoicePanelColors::row(state, false).icon, Style::accent()) << "dark on light";
        EXPECT_EQ(ChoicePanelColors::row(state, false).title, Style::primary());
        EXPECT_EQ(ChoicePanelColors::row(state, true).icon, Style::destructive());
        EXPECT_EQ(ChoicePanelColors::row(state, true).title, Style::destructive());
    }
}

TEST(ChoicePanelColors, IconsCanBeRecognisedOnEveryTint) {
    for (const Look& look : looks) {
        const TestPalette palette(look.text, look.window);
        for (const RowState state : states) {
            for (const bool isDestructive : {false, true}) {
                SCOPED_TRACE(look.name);
                const auto colors = ChoicePanelColors::row(state, isDestructive);
                const QColor row = blended(colors.fill, ChoicePanelColors::surface());
                EXPECT_GE(contrast(colors.icon, row), recognisableContrast);
            }
        }
    }
}

TEST(ChoicePanelColors, LinesAndCapsulesAreFaintTextColour) {
    const TestPalette palette(QColor(10, 20, 30), Qt::white);
    EXPECT_EQ(ChoicePanelColors::thumbnailOutline(), Style::withOpacity(Style::primary(), 0.12));
    EXPECT_EQ(ChoicePanelColors::keyHintFill(), Style::withOpacity(Style::primary(), 0.08));
}

TEST(ChoicePanelColors, TitlesCanBeReadOnEveryTint) {
    for (const Look& look : looks) {
        const TestPalette palette(look.text, look.window);
        for (const RowState state : states) {
            for (const bool isDestructive : {false, true}) {
                SCOPED_TRACE(look.name);
                const auto colors = ChoicePanelColors::row(state, isDestructive);
                const QColor background = blended(colors.fill, ChoicePanelColors::surface());
                EXPECT_GE(contrast(colors.title, background), readableContrast);
            }
        }
    }
}

TEST(ChoicePanelColors, SecondaryTextsCanBeReadOnEveryTint) {
    for (const Look& look : looks) {
        const TestPalette palette(look.text, look.window);
        for (const RowState state : states) {
            SCOPED_TRACE(look.name);
            const auto colors = ChoicePanelColors::row(state, false);
            const QColor row = blended(colors.fill, ChoicePanelColors::surface());
            EXPECT_GE(contrast(colors.subtitle, row), readableContrast);
            const QColor hint = blended(ChoicePanelColors::keyHintFill(), row);
            EXPECT_GE(contrast(colors.keyHint, hint), readableContrast);
        }
    }
}

} // namespace snapvane
