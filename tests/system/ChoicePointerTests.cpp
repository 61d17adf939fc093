// What the pointer does in the window that asks about a capture.

#include "ChoiceSuite.h"
#include "NoticeBystander.h"
#include "PictureCompare.h"
#include "ScreenGrab.h"
#include "Wait.h"

#include <X11/keysym.h>

using namespace Qt::StringLiterals;

namespace snapvane::testing {

namespace {

class ChoicePointer : public ChoiceSuite {
protected:
    void SetUp() override {
        ChoiceSuite::SetUp();
        startAskingAgent();
    }

    /// Checks that nothing has been chosen: the first choice after that counts.
    void expectNothingChosen() {
        injector().tapKey(XK_3);
        EXPECT_EQ(waitForOutcome(), (ChoiceOutcome{false, 1}));
        EXPECT_TRUE(choice().waitUntilGone());
    }

    static QImage glass(const QRect& rect) { return grabScreen(desktop().connection(), rect); }
};

struct RowCase {
    const char* what;
    ChoiceRow row;
    ChoiceOutcome outcome;
};

void PrintTo(const RowCase& row, std::ostream* out) {
    *out << row.what;
}

class ChoiceRows : public ChoicePointer, public ::testing::WithParamInterface<RowCase> {};

TEST_P(ChoiceRows, ClickRunsTheAction) {
    ask();
    click(card().row(GetParam().row));
    EXPECT_EQ(waitForOutcome(), GetParam().outcome);
    EXPECT_TRUE(choice().waitUntilGone());
}

INSTANTIATE_TEST_SUITE_P(
    Table, ChoiceRows,
    ::testing::Values(RowCase{"Copy", ChoiceRow::Copy, {true, 0}},
                      RowCase{"Upload", ChoiceRow::Upload, {false, 0}},
                      RowCase{"Save", ChoiceRow::Save, {false, 1}},
                      RowCase{"SavedDefaults", ChoiceRow::SavedDefaults, {true, 1}}),
    [](const auto& row) { return std::string(row.param.what); });

TEST_F(ChoicePointer, ClickOnTheLastRowDiscards) {
    ask();
    click(card().row(ChoiceRow::Cancel));
    expectDiscarded();
}

TEST_F(ChoicePointer, WholeRowIsClickable) {
    for (const bool atTheEnd : {false, true}) {
        const WindowInfo shown = ask();
        const QRect row = card().row(ChoiceRow::Cancel);
        injector().click(atTheEnd ? QPoint(row.right() - 1, row.bottom() - 1)
                                  : QPoint(row.left() + 1, row.top() + 1));
        EXPECT_TRUE(choice().waitUntilGone()) << "window " << shown.id;
    }
    expectDiscarded();
}

TEST_F(ChoicePointer, ClicksBesideTheCardDoNothingAndReachNobody) {
    NoticeBystander beneath(desktop().display(), NoticeBystander::Kind::OverrideRedirect,
                            {20, 20, 300, 700});
    ask();
    for (const int button : {1, 2, 3, 4, 5}) {
        injector().click({60, 600}, button);
    }
    EXPECT_TRUE(choice().isFocused());
    EXPECT_EQ(beneath.takeClicks(), 0);
    expectNothingChosen();
    EXPECT_EQ(beneath.takeClicks(), 0);
}

TEST_F(ChoicePointer, ClicksOnTheCardBesideItsRowsDoNothing) {
    ask();
    const ChoiceCard shown = card();
    const QRect first = shown.row(ChoiceRow::Copy);
    const QPoint places[] = {
        shown.rect.topLeft() + QPoint(210, 30),                          // the heading
        {shown.rect.center().x(), (shown.rect.top() + first.top()) / 2}, // the thumbnail
        {shown.rect.left() + 10, first.center().y()},                    // the border
        {first.center().x(), first.bottom() + 5},                        // between two rows
    };
    for (const QPoint& place : places) {
        injector().click(place);
    }
    expectNothingChosen();
}

TEST_F(ChoicePointer, OtherButtonsOnARowDoNothing) {
    ask();
    const QPoint row = card().row(ChoiceRow::Copy).center();
    for (const int button : {2, 3, 4, 5}) {
        injector().click(row, button);
    }
    expectNothingChosen();
}

TEST_F(ChoicePointer, ReleaseElsewhereTakesAPressBack) {
    ask();
    const ChoiceCard shown = card();
    injector().drag(shown.row(ChoiceRow::Copy).center(), {60, 600});
    injector().drag(shown.row(ChoiceRow::Copy).center(), shown.row(ChoiceRow::Cancel).center());
    injector().drag({60, 600}, shown.row(ChoiceRow::Copy).center());
    expectNothingChosen();
}

TEST_F(ChoicePointer, HoveredRowLooksDifferentUntilThePointerLeaves) {
    ask();
    injector().moveTo({60, 600});
    const ChoiceCard shown = card();
    const QImage idle = glass(shown.rect);
    for (const ChoiceRow which : {ChoiceRow::Copy, ChoiceRow::Cancel}) {
        const QRect row = shown.row(which);
        // Beside icon and texts, where there is but the row's colour.
        const QRect inside(row.left() + 4, row.center().y(), 4, 1);
        const QImage before = glass(inside);
        injector().moveTo(row.center());
        EXPECT_TRUE(waitUntil([&] { return glass(inside) != before; }, std::chrono::seconds(2)));
        injector().moveTo({60, 600});
        EXPECT_TRUE(waitUntil([&] { return glass(shown.rect) == idle; }, std::chrono::seconds(2)));
    }
    expectNothingChosen();
}

TEST_F(ChoicePointer, RowThatComesUpUnderThePointerIsHighlighted) {
    // The drag ends where the row will be.
    ask({300, 200, 340, 280});
    const ChoiceCard shown = card();
    ASSERT_TRUE(shown.row(ChoiceRow::Save).contains(probe().pointer()));
    const auto fill = [&](ChoiceRow which) {
        const QRect row = shown.row(which);
        return glass({row.left() + 4, row.center().y(), 1, 1}).pixel(0, 0);
    };
    EXPECT_TRUE(waitUntil([&] { return fill(ChoiceRow::Save) != fill(ChoiceRow::Copy); },
                          std::chrono::seconds(2)));
}

TEST_F(ChoicePointer, TooltipGoesWithTheWindow) {
    const WindowInfo shown = ask();
    injector().moveTo(card().row(ChoiceRow::Save).center());
    const auto others = [&] {
        auto windows = probe().windowsOfClass(u"Snapvane"_s);
        std::erase_if(windows, [&](const WindowInfo& window) {
            return !window.viewable || window.id == shown.id || window.name == u"Snapvane Notice"_s;
        });
        return windows.size();
    };
    require("the row's tooltip", [&] { return others() == 1; });
    EXPECT_TRUE(choice().isFocused());
    expectNothingChosen();
    EXPECT_TRUE(waitUntil([&] { return others() == 0; }, std::chrono::seconds(1)));
}

TEST_F(ChoicePointer, OnlyTheHoveredRowLooksDifferent) {
    ask();
    injector().moveTo({60, 600});
    const ChoiceCard shown = card();
    const QImage idle = glass(desktop().rect());
    const QRect row = shown.row(ChoiceRow::Save);
    injector().moveTo(row.center());
    require("the row to be highlighted", [&] { return glass(row) != idle.copy(row); });
    QImage now = glass(desktop().rect());
    for (int y = row.top(); y <= row.bottom(); ++y) {
        for (int x = row.left(); x <= row.right(); ++x) {
            now.setPixel(x, y, idle.pixel(x, y));
        }
    }
    EXPECT_TRUE(samePicture(idle, now, u"choice-hovered"_s));
}

} // namespace

} // namespace snapvane::testing
