// The loupe follows the pointer and shows the desktop's own pixels, upright, wherever the pointer
// is.

#include "PointerAidsSuite.h"

#include <QColor>

#include <csignal>
#include <xcb/xtest.h>

using namespace Qt::StringLiterals;

namespace snapvane::testing {

namespace {

template <typename FlavourType> class Loupe : public FlavouredPointerAids<FlavourType> {};

TYPED_TEST_SUITE(Loupe, OpaqueAndTranslucent, FlavourNames);

TYPED_TEST(Loupe, ShowsThePixelsOfEveryEdgeAndCorner) {
    this->beginSelection({640, 360});
    for (const QRect& screen : {this->desktop().screenRect(0), this->desktop().screenRect(1)}) {
        const QPoint middle = screen.center();
        for (const QPoint& pointer :
             {screen.topLeft(), QPoint(middle.x(), screen.top()), screen.topRight(),
              QPoint(screen.left(), middle.y()), middle, QPoint(screen.right(), middle.y()),
              screen.bottomLeft(), QPoint(middle.x(), screen.bottom()), screen.bottomRight(),
              screen.topLeft() + QPoint(6, 6), screen.bottomRight() - QPoint(7, 7)}) {
            this->injector().moveTo(pointer);
            EXPECT_TRUE(this->loupe().shows(pointer, this->background()));
        }
    }
    this->cancel();
}

TYPED_TEST(Loupe, ChangesSidesWhereTheScreenEnds) {
    // Distance, width and margin: the last place that has room, and the first that has none.
    constexpr int lastOnTheRight = 1280 - 8 - 160 - 18;
    constexpr int lastAbove = 8 + 164 + 18 - 1;
    const std::vector<std::pair<QPoint, QPoint>> places = {
        {{lastOnTheRight, 400}, {lastOnTheRight + 18, 400 + 1 - 18 - 164}},
        {{lastOnTheRight + 1, 400}, {lastOnTheRight + 1 - 18 - 160, 400 + 1 - 18 - 164}},
        {{500, lastAbove}, {518, 8}},
        {{500, lastAbove - 1}, {518, lastAbove + 18}},
        {{1279, 0}, {1279 - 18 - 160, 19}},
        {{1280, 0}, {1298, 19}},
        {{2559, 719}, {2559 - 18 - 160, 720 - 18 - 164}},
    };
    this->beginSelection({640, 360});
    for (const auto& [pointer, topLeft] : places) {
        this->injector().moveTo(pointer);
        const QRect expected(topLeft, QSize(160, 164));
        EXPECT_TRUE(
            waitUntil([&] { return this->loupe().window() == expected; }, std::chrono::seconds(2)))
            << "the loupe is not at " << topLeft.x() << ',' << topLeft.y();
        EXPECT_TRUE(this->loupe().shows(pointer, this->background()));
    }
    this->cancel();
}

TYPED_TEST(Loupe, MarksThePixelUnderThePointer) {
    // Where the desktop is dark green, far from the colours of all marks.
    const QPoint pointer(532, 328);
    this->beginSelection(pointer);
    ASSERT_TRUE(this->loupe().shows(pointer, this->background()));
    const QImage picture = grabScreen(this->desktop().connection(), this->loupe().place(pointer));
    // Between pixels; the cross's lines of one pixel are those to the right and below.
    const QPoint middle(80, 68);
    const auto isRed = [](const QColor& c) { return c.red() > c.green() + 40 && c.red() > 90; };
    const auto isYellow = [](const QColor& c) { return c.red() > 200 && c.green() > 150; };
    const auto isWhite = [](const QColor& c) { return c.red() > 200 && c.blue() > 200; };
    for (const int distance : {-10, -7, -2, 1, 6, 9}) {
        EXPECT_TRUE(isRed(picture.pixelColor(middle + QPoint(distance, 0)))) << distance;
        EXPECT_TRUE(isRed(picture.pixelColor(middle + QPoint(0, distance)))) << distance;
    }
    for (const int distance : {-10, -7, 6, 9}) {
        EXPECT_FALSE(isRed(picture.pixelColor(middle + QPoint(distance, -1)))) << distance;
        EXPECT_FALSE(isRed(picture.pixelColor(middle + QPoint(-1, distance)))) << distance;
    }
    for (const int distance : {-12, 11}) {
        EXPECT_FALSE(isRed(picture.pixelColor(middle + QPoint(distance, 0)))) << distance;
        EXPECT_FALSE(isRed(picture.pixelColor(middle + QPoint(0, distance)))) << distance;
    }
    for (const QPoint& corner : {QPoint(-5, -5), QPoint(4, -5), QPoint(-4, 4), QPoint(3, 3)}) {
        const QColor colour = picture.pixelColor(middle + corner);
        EXPECT_TRUE(isYellow(colour) && colour.blue() < 100) << colour.name().toStdString();
    }
    for (const QPoint& place : {QPoint(80, 8), QPoint(80, 127), QPoint(20, 68), QPoint(139, 68)}) {
        EXPECT_TRUE(isWhite(picture.pixelColor(place)));
    }
    this->cancel();
}

/// How wide the dark box of the label is at its middle.
int labelWidth(const QImage& loupe) {
    constexpr int middleRow = 164 - 6 - 4;
    int first = -1;
    int last = -2;
    for (int x = 0; x < loupe.width(); ++x) {
        const bool isDark = qGray(loupe.pixel(x, middleRow)) < 60;
        first = isDark && first < 0 ? x : first;
        last = isDark ? x : last;
    }
    return last - first + 1;
}

TYPED_TEST(Loupe, LabelGrowsByTheSizeOfTheSelection) {
    // The desktop behind the label is light there, under the veil as well.
    const QPoint from(240, 400);
    const QPoint to(440, 513);
    this->beginSelection(from);
    const auto width = [this, to] {
        return labelWidth(grabScreen(this->desktop().connection(), this->loupe().place(to)));
    };
    this->injector().moveTo(to);
    EXPECT_TRUE(this->loupe().shows(to, this->background()));
    const int before = width();
    EXPECT_GT(before, 40);
    EXPECT_LT(before, 80);
    this->injector().dragTo(from, to);
    EXPECT_TRUE(waitUntil(
        [&] { return this->loupe().window() == this->loupe().place(to) && width() > before + 50; },
        std::chrono::seconds(2)));
    EXPECT_TRUE(this->loupe().shows(to, this->background()));
    EXPECT_LE(width(), 160);
    this->cancel();
    this->injector().release();
}

/// Counts how often a window is moved, as the server tells other clients.
class MoveCounter {
public:
    explicit MoveCounter(const QString& display) : m_connection(display) {
        const uint32_t mask = XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY;
        xcb_change_window_attributes(m_connection, m_connection.root(), XCB_CW_EVENT_MASK, &mask);
        m_connection.sync();
    }

    int movesOf(const std::vector<WindowInfo>& windows) {
        m_connection.sync();
        int count = 0;
        while (const Reply<xcb_generic_event_t> event{xcb_poll_for_event(m_connection)}) {
            const auto* moved = reinterpret_cast<xcb_configure_notify_event_t*>(event.get());
            const bool isMove = (event->response_type & 0x7fU) == XCB_CONFIGURE_NOTIFY;
            count += isMove && std::ranges::any_of(windows,
                                                   [&](const WindowInfo& window) {
                                                       return window.id == moved->window;
                                                   })
                         ? 1
                         : 0;
        }
        return count;
    }

private:
    XcbConnection m_connection;
};

TYPED_TEST(Loupe, OnlyTheLastPlaceOfABurstOfMotionCounts) {
    const QPoint last(901, 503);
    this->beginSelection({100, 100});
    ASSERT_TRUE(this->loupe().shows({100, 100}, this->background()));
    const auto windows = this->probe().windowsNamed(u"Snapvane Magnifier"_s);
    MoveCounter counter(this->desktop().display());
    const XcbConnection& connection = this->desktop().connection();
    // All of it waits when the agent looks again.
    this->agent().process().sendSignal(SIGSTOP);
    constexpr int count = 500;
    for (int step = 1; step <= count; ++step) {
        const QPoint place = QPoint(100, 100) + (last - QPoint(100, 100)) * step / count;
        xcb_test_fake_input(connection, XCB_MOTION_NOTIFY, 0, XCB_CURRENT_TIME, connection.root(),
                            static_cast<int16_t>(place.x()), static_cast<int16_t>(place.y()), 0);
    }
    connection.sync();
    this->agent().process().sendSignal(SIGCONT);
    EXPECT_TRUE(waitUntil([&] { return this->loupe().window() == this->loupe().place(last); },
                          std::chrono::milliseconds(500)));
    EXPECT_TRUE(this->loupe().shows(last, this->background()));
    // Some may be read apart from the rest; a queue would make hundreds of them.
    const int moves = counter.movesOf(windows);
    EXPECT_GE(moves, 1);
    EXPECT_LE(moves, 20);
    this->cancel();
}

TYPED_TEST(Loupe, FollowsMotionThatGoesOn) {
    this->beginSelection({100, 100});
    for (int round = 0; round < 4; ++round) {
        for (int step = 0; step < 125; ++step) {
            this->injector().moveTo({100 + step * 8, 200 + (step % 2) * 100});
        }
        const QPoint stop(300 + 200 * round, 600 - 30 * round);
        this->injector().moveTo(stop);
        EXPECT_TRUE(waitUntil([&] { return this->loupe().window() == this->loupe().place(stop); },
                              std::chrono::milliseconds(250)));
        this->expectAidsAt(stop);
    }
    this->cancel();
}

TYPED_TEST(Loupe, ShowsWindowsAsTheyStoodBeforeTheSelection) {
    TestClient::Options options;
    options.rect = QRect(300, 300, 300, 200);
    options.seed = 7;
    options.overrideRedirect = true;
    auto window = std::make_unique<TestClient>(this->desktop(), options);
    const QImage before = this->settledGlass();
    ASSERT_NE(before, this->background());
    this->beginSelection({303, 303});
    EXPECT_TRUE(this->loupe().shows({303, 303}, before));
    // What happens to the desktop meanwhile is not in the pictures.
    window.reset();
    this->injector().moveTo({450, 400});
    EXPECT_TRUE(this->loupe().shows({450, 400}, before));
    this->cancel();
}

} // namespace

} // namespace snapvane::testing
