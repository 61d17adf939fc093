// How the screen looks while the user is asked about a capture, and afterwards.

#include "ChoiceSuite.h"
#include "NoticeBystander.h"
#include "PaintedWindow.h"
#include "PictureCompare.h"
#include "ScreenGrab.h"
#include "TestClient.h"
#include "Wait.h"

#include <X11/keysym.h>

using namespace Qt::StringLiterals;

namespace snapvane::testing {

namespace {

constexpr QRect besideIt(40, 300, 200, 300);
constexpr uint32_t red = 0xc83c28;
constexpr uint32_t green = 0x3cc850;

template <typename FlavourType> class ChoiceLook : public FlavouredChoice<FlavourType> {
protected:
    void SetUp() override {
        FlavouredChoice<FlavourType>::SetUp();
        this->startAskingAgent();
    }

    static constexpr bool isComposited = FlavourType::compositor != Compositor::None;

    /// Without a title bar, whose colour follows the keyboard.
    static TestClient::Options bare(const QString& mode) {
        TestClient::Options options;
        options.mode = mode;
        options.rect = besideIt;
        options.overrideRedirect = true;
        return options;
    }

    QImage glass(const QRect& rect) { return grabScreen(this->desktop().connection(), rect); }
    QImage glass() { return glass(this->desktop().rect()); }
    QImage settledGlass() {
        return grabSettledScreen(this->desktop().connection(), this->desktop().rect());
    }
    QRgb pixelAt(const QPoint& place) { return glass(QRect(place, QSize(1, 1))).pixel(0, 0); }

    bool isDimmed(const QPoint& place, uint32_t colour) {
        QImage one(1, 1, QImage::Format_RGB32);
        one.fill(colour | 0xff000000U);
        return pixelsNotDimmed(one, glass(QRect(place, QSize(1, 1))), one.rect()) == 0;
    }

    /// Closes the window; a compositor may take a moment to draw what was beneath, whereas the
    /// server alone does it with the closing.
    void expectGlassAfterClosing(const QImage& expected, const char* what) {
        this->close({"Escape", XK_Escape});
        QImage now = glass();
        if (isComposited) {
            waitUntil(
                [&] {
                    now = glass();
                    return now == expected;
                },
                std::chrono::seconds(2));
        }
        EXPECT_TRUE(
            samePicture(expected, now,
                        u"choice-%1-%2"_s.arg(QLatin1String(nameOf(FlavourType::compositor)),
                                              QLatin1String(what))));
    }
};

TYPED_TEST_SUITE(ChoiceLook, WithoutAndWithCompositor, FlavourNames);

TYPED_TEST(ChoiceLook, DimsTheScreenByEighteenPercent) {
    const TestClient window(this->desktop(), this->bare(u"pattern"_s));
    const QImage before = this->settledGlass();
    this->ask();
    const ChoiceCard card = this->card();
    EXPECT_EQ(pixelsNotDimmed(before, this->glass(), besideTheCard(this->desktop().rect(), card)),
              0);
}

TYPED_TEST(ChoiceLook, CardIsInTheMiddle) {
    this->ask();
    const QRect card = this->card().rect;
    const QRect screen = this->desktop().rect();
    EXPECT_LE(std::abs((card.left() - screen.left()) - (screen.right() - card.right())), 1);
    EXPECT_LE(std::abs((card.top() - screen.top()) - (screen.bottom() - card.bottom())), 1);
}

TYPED_TEST(ChoiceLook, DesktopIsAsItWasAfterwards) {
    const TestClient window(this->desktop(), this->bare(u"pattern"_s));
    const QImage before = this->settledGlass();
    this->ask();
    this->card();
    this->expectGlassAfterClosing(before, "after");
}

TYPED_TEST(ChoiceLook, SlowApplicationIsAsItWasAfterwards) {
    const TestClient window(this->desktop(), this->bare(u"slow"_s));
    const QImage before = this->settledGlass();
    this->ask();
    this->card();
    this->expectGlassAfterClosing(before, "slow");
}

TYPED_TEST(ChoiceLook, ApplicationsNeedNotPaintAnew) {
    PaintedWindow window(this->desktop().display(), besideIt, red);
    this->settledGlass();
    window.takeExposures();
    this->ask();
    this->card();
    this->close({"Escape", XK_Escape});
    this->settledGlass();
    EXPECT_EQ(window.takeExposures(), 0);
}

TYPED_TEST(ChoiceLook, WhatAnApplicationPaintsMeanwhileIsThereAfterwards) {
    PaintedWindow window(this->desktop().display(), besideIt, red);
    QImage expected = this->settledGlass();
    for (int y = besideIt.top(); y <= besideIt.bottom(); ++y) {
        for (int x = besideIt.left(); x <= besideIt.right(); ++x) {
            expected.setPixel(x, y, green);
        }
    }
    this->ask();
    this->card();
    window.paint(green);
    this->expectGlassAfterClosing(expected, "painted");
}

class ChoiceLookComposited : public ChoiceLook<Flavour<Compositor::Picom>> {};

TEST_F(ChoiceLookComposited, DesktopBeneathLives) {
    PaintedWindow window(desktop().display(), besideIt, red);
    ask();
    card();
    EXPECT_TRUE(isDimmed(besideIt.center(), red));
    window.paint(green);
    EXPECT_TRUE(
        waitUntil([&] { return isDimmed(besideIt.center(), green); }, std::chrono::seconds(2)));
}

class ChoiceWindow : public ChoiceLook<Flavour<Compositor::None>> {
protected:
    static void switchToWorkspace(uint32_t number) {
        const XcbConnection& connection = desktop().connection();
        xcb_client_message_event_t message = {};
        message.response_type = XCB_CLIENT_MESSAGE;
        message.format = 32;
        message.window = connection.root();
        message.type = connection.atom("_NET_CURRENT_DESKTOP");
        message.data.data32[0] = number;
        xcb_send_event(connection, 0, connection.root(),
                       XCB_EVENT_MASK_SUBSTRUCTURE_REDIRECT | XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY,
                       reinterpret_cast<const char*>(&message));
        require("the other workspace", [&] {
            return probe().number(connection.root(), "_NET_CURRENT_DESKTOP") == number;
        });
    }
};

TEST_F(ChoiceWindow, HasTheNamesAndPlaceOthersRelyOn) {
    const WindowInfo shown = ask();
    EXPECT_EQ(choice().windows().size(), 1U);
    EXPECT_TRUE(shown.overrideRedirect);
    EXPECT_EQ(shown.instanceName, u"snapvane"_s);
    EXPECT_EQ(shown.className, u"Snapvane"_s);
    EXPECT_EQ(shown.rect, desktop().rect());
}

TEST_F(ChoiceWindow, IsOfTheSameKindAsTheNotice) {
    const WindowInfo shown = ask();
    const auto kind = probe().number(shown.id, "_NET_WM_WINDOW_TYPE");
    close({"Copy", XK_1});
    EXPECT_EQ(probe().number(waitForNotice().id, "_NET_WM_WINDOW_TYPE"), kind);
}

TEST_F(ChoiceWindow, IsSeenOverAFullScreenWindow) {
    const NoticeBystander window(desktop().display(), NoticeBystander::Kind::FullScreen,
                                 {10, 10, 100, 100});
    require("a window over the whole screen", [this] {
        return pixelAt({1279, 0}) == (0xff000000U | NoticeBystander::colour);
    });
    ask();
    card();
    EXPECT_TRUE(isDimmed({1270, 10}, NoticeBystander::colour));
}

TEST_F(ChoiceWindow, StaysAboveAWindowThatComesMeanwhile) {
    ask();
    const ChoiceCard before = card();
    const QImage under = glass();
    const NoticeBystander window(desktop().display(), NoticeBystander::Kind::FullScreen,
                                 {10, 10, 100, 100});
    // It gets the keyboard once the window manager has put it in its place.
    require("the other window to have come", [&] { return probe().focus() == window.window(); });
    EXPECT_TRUE(samePicture(under, settledGlass(), u"choice-above"_s));
    click(before.row(ChoiceRow::Save));
    EXPECT_EQ(waitForOutcome().files, 1);
}

TEST_F(ChoiceWindow, IsOnEveryWorkspace) {
    ask();
    const ChoiceCard onTheFirst = card();
    switchToWorkspace(1);
    EXPECT_EQ(card().rect, onTheFirst.rect);
    // The window manager may have given the keyboard to somebody there.
    injector().click({60, 60});
    require("the keyboard", [] { return choice().isFocused(); });
    close({"Save", XK_3});
    EXPECT_EQ(waitForOutcome().files, 1);
    switchToWorkspace(0);
}

} // namespace

} // namespace snapvane::testing
