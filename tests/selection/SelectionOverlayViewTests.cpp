#include "selection/SelectionOverlayView.h"

#include "selection/Required.h"

#include <gmock/gmock.h>

namespace snapvane {

namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

constexpr int escape = 53;

class RecordingDelegate : public SelectionOverlayViewDelegate {
public:
    void selectionOverlayViewDidComplete(SelectionOverlayView&, const GlobalRect& rect) override {
        completed.push_back(rect);
    }
    void selectionOverlayViewDidCancel(SelectionOverlayView&) override { ++cancelled; }

    std::vector<GlobalRect> completed;
    int cancelled = 0;
};

struct PointerReport {
    GlobalPoint point;
    GlobalSize size;

    friend bool operator==(const PointerReport&, const PointerReport&) = default;
    friend void PrintTo(const PointerReport& report, std::ostream* stream) {
        *stream << report.point.x << ',' << report.point.y << ' ' << report.size.width << " x "
                << report.size.height;
    }
};

/// A pointer at a pixel whose two meanings fall together.
ScreenMapping::PointerPlace at(double x, double y) {
    return {{x, y}, {x, y}};
}

class SelectionOverlayViewTest : public ::testing::Test {
protected:
    SelectionOverlayViewTest() {
        view.delegate = &delegate;
        view.onPointerChange = [this](GlobalPoint point, GlobalSize size) {
            reports.push_back({point, size});
        };
        view.setNeedsDisplay = [this] { ++redraws; };
    }

    void drag(ScreenMapping::PointerPlace from, ScreenMapping::PointerPlace to) {
        view.mouseDown(from);
        view.mouseDragged(to);
        view.mouseUp();
    }
    void expectIdle() const {
        EXPECT_FALSE(view.isDragging());
        EXPECT_FALSE(view.dragStart().has_value());
        EXPECT_EQ(view.currentSelection(), GlobalRect());
    }

    RecordingDelegate delegate;
    std::vector<PointerReport> reports;
    int redraws = 0;
    SelectionOverlayView view{{{0, 0}, {800, 600}}};
};

TEST_F(SelectionOverlayViewTest, BeginsIdle) {
    expectIdle();
    EXPECT_TRUE(view.acceptsFirstResponder());
    EXPECT_EQ(view.bounds(), (GlobalRect{{0, 0}, {800, 600}}));
    EXPECT_EQ(SelectionOverlayView::selectionBorderWidth, 1.5);
}

TEST_F(SelectionOverlayViewTest, PressStartsADrag) {
    view.mouseDown(at(10, 20));
    EXPECT_TRUE(view.isDragging());
    EXPECT_EQ(view.dragStart(), (GlobalPoint{10, 20}));
    EXPECT_EQ(view.currentSelection(), GlobalRect());
    EXPECT_EQ(redraws, 1);
    EXPECT_THAT(reports, ElementsAre(PointerReport{{10, 20}, {}}));
}

TEST_F(SelectionOverlayViewTest, DragSpansFromStartToPointer) {
    view.mouseDown(at(10, 20));
    view.mouseDragged(at(110, 70));
    EXPECT_EQ(view.currentSelection(), (GlobalRect{{10, 20}, {100, 50}}));
    view.mouseDragged(at(4, 15));
    EXPECT_EQ(view.currentSelection(), (GlobalRect{{4, 15}, {6, 5}}));
    EXPECT_EQ(redraws, 3);
    EXPECT_THAT(reports,
                ElementsAre(PointerReport{{10, 20}, {}}, PointerReport{{110, 70}, {100, 50}},
                            PointerReport{{4, 15}, {6, 5}}));
}

TEST_F(SelectionOverlayViewTest, SelectionIsNotClampedToTheBounds) {
    view.mouseDown(at(700, 500));
    view.mouseDragged(at(900, 650));
    EXPECT_EQ(view.currentSelection(), (GlobalRect{{700, 500}, {200, 150}}));
}

TEST_F(SelectionOverlayViewTest, MoveReportsOnlyThePlace) {
    view.mouseMoved(at(33, 44));
    EXPECT_THAT(reports, ElementsAre(PointerReport{{33, 44}, {}}));
    EXPECT_EQ(redraws, 0);
    expectIdle();
}

TEST_F(SelectionOverlayViewTest, DragGoesByTheEdgeAndReportsTheInside) {
    view.mouseDown({{10, 100}, {10, 99}});
    view.mouseDragged({{20, 50}, {19, 49}});
    EXPECT_EQ(view.currentSelection(), (GlobalRect{{10, 50}, {10, 50}}));
    view.mouseMoved({{1, 2}, {3, 4}});
    EXPECT_THAT(reports, ElementsAre(PointerReport{{10, 99}, {}}, PointerReport{{19, 49}, {10, 50}},
                                     PointerReport{{3, 4}, {10, 50}}));
}

TEST_F(SelectionOverlayViewTest, ReleaseCompletesAndGoesBackToIdle) {
    drag(at(100, 100), at(300, 250));
    EXPECT_THAT(delegate.completed, ElementsAre(GlobalRect{{100, 100}, {200, 150}}));
    EXPECT_EQ(delegate.cancelled, 0);
    EXPECT_EQ(redraws, 3);
    EXPECT_EQ(reports.size(), 2U) << "a release is no pointer position";
    expectIdle();
    view.mouseMoved(at(5, 5));
    EXPECT_EQ(reports.back(), (PointerReport{{5, 5}, {}}));
}

/// The delegate finds the view idle already: what it does may start another session.
TEST(SelectionOverlayView, StateIsResetBeforeTheDelegateIsTold) {
    struct LookingDelegate : RecordingDelegate {
        void selectionOverlayViewDidComplete(SelectionOverlayView& view,
                                             const GlobalRect& rect) override {
            wasIdle = !view.isDragging() && !view.dragStart() && view.currentSelection().isEmpty();
            RecordingDelegate::selectionOverlayViewDidComplete(view, rect);
        }
        bool wasIdle = false;
    } delegate;
    SelectionOverlayView view({{0, 0}, {100, 100}});
    view.delegate = &delegate;
    view.mouseDown(at(0, 0));
    view.mouseDragged(at(50, 50));
    view.mouseUp();
    EXPECT_TRUE(delegate.wasIdle);
    EXPECT_EQ(delegate.completed.size(), 1U);
}

TEST_F(SelectionOverlayViewTest, AllFourDirectionsGiveTheSame) {
    drag(at(100, 100), at(140, 130));
    drag(at(140, 130), at(100, 100));
    drag(at(100, 130), at(140, 100));
    drag(at(140, 100), at(100, 130));
    const GlobalRect expected{{100, 100}, {40, 30}};
    EXPECT_THAT(delegate.completed, ElementsAre(expected, expected, expected, expected));
}

struct SizeCase {
    double width;
    double height;
    bool completes;

    friend void PrintTo(const SizeCase& example, std::ostream* stream) {
        *stream << example.width << " x " << example.height;
    }
};

class MinimumSize : public SelectionOverlayViewTest,
                    public ::testing::WithParamInterface<SizeCase> {};

TEST_P(MinimumSize, SmallerOnesCancel) {
    const SizeCase& size = GetParam();
    drag(at(10, 10), at(10 + size.width, 10 + size.height));
    EXPECT_EQ(delegate.completed.size(), size.completes ? 1U : 0U);
    EXPECT_EQ(delegate.cancelled, size.completes ? 0 : 1);
    expectIdle();
}

INSTANTIATE_TEST_SUITE_P(Table, MinimumSize,
                         ::testing::Values(SizeCase{4, 4, true}, SizeCase{3.9, 100, false},
                                           SizeCase{100, 3.9, false}, SizeCase{3, 100, false},
                                           SizeCase{-4, -4, true}, SizeCase{-3.9, 4, false},
                                           SizeCase{4, 100, true}, SizeCase{0, 0, false},
                                           SizeCase{0, 100, false}));

TEST_F(SelectionOverlayViewTest, ClickCancels) {
    view.mouseDown(at(50, 50));
    view.mouseUp();
    EXPECT_EQ(delegate.cancelled, 1);
    EXPECT_THAT(delegate.completed, IsEmpty());
}

TEST_F(SelectionOverlayViewTest, ReleaseWithoutPressIsIgnored) {
    view.mouseUp();
    EXPECT_EQ(delegate.cancelled, 0);
    EXPECT_EQ(redraws, 0);
    drag(at(0, 0), at(50, 50));
    view.mouseUp();
    EXPECT_EQ(delegate.completed.size(), 1U);
    EXPECT_EQ(delegate.cancelled, 0);
}

TEST_F(SelectionOverlayViewTest, DragWithoutPressIsIgnored) {
    view.mouseDragged(at(50, 50));
    EXPECT_THAT(reports, IsEmpty());
    EXPECT_EQ(redraws, 0);
    expectIdle();
}

TEST_F(SelectionOverlayViewTest, PressDuringADragStartsAnew) {
    view.mouseDown(at(10, 10));
    view.mouseDragged(at(100, 100));
    view.mouseDown(at(60, 60));
    EXPECT_EQ(view.currentSelection(), GlobalRect());
    EXPECT_EQ(reports.back(), (PointerReport{{60, 60}, {}}));
    view.mouseDragged(at(70, 80));
    view.mouseUp();
    EXPECT_THAT(delegate.completed, ElementsAre(GlobalRect{{60, 60}, {10, 20}}));
}

TEST_F(SelectionOverlayViewTest, EscapeCancels) {
    EXPECT_TRUE(view.keyDown(escape));
    EXPECT_EQ(delegate.cancelled, 1) << "before any press";
    view.mouseDown(at(10, 10));
    view.mouseDragged(at(100, 100));
    EXPECT_TRUE(view.keyDown(escape));
    EXPECT_EQ(delegate.cancelled, 2) << "during a drag";
    EXPECT_THAT(delegate.completed, IsEmpty());
}

TEST_F(SelectionOverlayViewTest, CancelCommandCancels) {
    view.cancelOperation();
    EXPECT_EQ(delegate.cancelled, 1);
}

/// Return, keypad enter, space, tab, the four arrows, a letter, no key code at all.
TEST_F(SelectionOverlayViewTest, OtherKeysMeanNothing) {
    view.mouseDown(at(10, 10));
    view.mouseDragged(at(100, 100));
    const GlobalRect before = view.currentSelection();
    for (const int key : {36, 76, 49, 48, 123, 124, 125, 126, 0, 47, -1}) {
        EXPECT_FALSE(view.keyDown(key)) << key;
    }
    EXPECT_EQ(delegate.cancelled, 0);
    EXPECT_THAT(delegate.completed, IsEmpty());
    EXPECT_TRUE(view.isDragging());
    EXPECT_EQ(view.currentSelection(), before);
}

TEST(SelectionOverlayView, GoesWithoutDelegateAndCallbacks) {
    SelectionOverlayView view({{0, 0}, {100, 100}});
    view.mouseMoved(at(1, 1));
    view.mouseDown(at(0, 0));
    view.mouseDragged(at(50, 50));
    view.mouseUp();
    EXPECT_FALSE(view.isDragging());
    view.mouseDown(at(0, 0));
    view.mouseUp();
    EXPECT_TRUE(view.keyDown(escape));
    view.cancelOperation();
    EXPECT_FALSE(view.isDragging());
}

TEST_F(SelectionOverlayViewTest, PictureShowsTheSelectionOnlyWhileDragging) {
    const Screen screen =
        ScreenMapping::layOut({{1, QStringLiteral("S"), {{0, 0}, {800, 600}}, 1, {}}}).front();
    EXPECT_FALSE(view.picture(screen).hole.has_value());
    view.mouseDown(at(100, 100));
    EXPECT_FALSE(view.picture(screen).hole.has_value());
    view.mouseDragged(at(100, 200));
    EXPECT_FALSE(view.picture(screen).hole.has_value()) << "no width, no hole";
    view.mouseDragged(at(300, 200));
    const SelectionPicture picture = view.picture(screen);
    EXPECT_EQ(picture.hole, (PixelRect{100, 400, 200, 100}));
    EXPECT_EQ(testing::required(picture.label).text, QStringLiteral("200 \u00D7 100 pt"));
    EXPECT_EQ(picture.borderWidth, 1.5);
    view.mouseUp();
    EXPECT_FALSE(view.picture(screen).hole.has_value());
    EXPECT_FALSE(view.picture(screen).label.has_value());
}

} // namespace

} // namespace snapvane
