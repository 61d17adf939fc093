// What may happen while the user is asked about a capture: the program ends, the desktop changes,
// another capture comes.

#include "ChoiceSuite.h"
#include "InputGrabs.h"
#include "NoticeBystander.h"
#include "PictureCompare.h"
#include "ScreenGrab.h"
#include "Wait.h"

#include <QElapsedTimer>
#include <QImage>

#include <X11/keysym.h>

using namespace Qt::StringLiterals;

namespace snapvane::testing {

namespace {

constexpr QRect otherArea(60, 300, 120, 80);

template <typename FlavourType> class ChoiceLife : public FlavouredChoice<FlavourType> {
protected:
    void SetUp() override {
        FlavouredChoice<FlavourType>::SetUp();
        this->startAskingAgent();
    }

    /// An application in which the user works.
    std::unique_ptr<NoticeBystander> focusedApplication() {
        auto window = std::make_unique<NoticeBystander>(
            this->desktop().display(), NoticeBystander::Kind::Plain, QRect(20, 300, 200, 200));
        xcb_set_input_focus(this->desktop().connection(), XCB_INPUT_FOCUS_POINTER_ROOT,
                            window->window(), XCB_CURRENT_TIME);
        require("the application to have the keyboard", [&] {
            const xcb_window_t root = this->desktop().connection().root();
            return this->probe().focus() == window->window() &&
                   this->probe().number(root, "_NET_ACTIVE_WINDOW") == window->window();
        });
        return window;
    }

    QImage glass() { return grabScreen(this->desktop().connection(), this->desktop().rect()); }
    QImage settledGlass() {
        return grabSettledScreen(this->desktop().connection(), this->desktop().rect());
    }
    void expectGlass(const QImage& expected, const char* what) {
        QImage now;
        waitUntil(
            [&] {
                now = glass();
                return now == expected;
            },
            std::chrono::seconds(2));
        EXPECT_TRUE(samePicture(expected, now, u"choice-life-"_s + QLatin1String(what)));
    }
};

TYPED_TEST_SUITE(ChoiceLife, WithoutAndWithCompositor, FlavourNames);

TYPED_TEST(ChoiceLife, CrashLeavesNoWindowAndAUsableKeyboard) {
    const auto window = this->focusedApplication();
    const QImage before = this->settledGlass();
    this->ask();
    this->card();
    this->agent().killHard();
    EXPECT_TRUE(this->choice().waitUntilGone(std::chrono::seconds(1)));
    EXPECT_FALSE(isPointerGrabbed(this->desktop().connection()));
    EXPECT_FALSE(isKeyboardGrabbed(this->desktop().connection()));
    this->expectGlass(before, "crash");
    // The window manager gives the keyboard to whom it thinks fit.
    EXPECT_TRUE(waitUntil(
        [&] {
            this->injector().tapKey(XK_a);
            return !window->takeKeys().empty();
        },
        std::chrono::seconds(2)));
}

TYPED_TEST(ChoiceLife, QuittingDropsTheCapture) {
    const auto window = this->focusedApplication();
    const QImage before = this->settledGlass();
    this->ask();
    this->card();
    QElapsedTimer clock;
    clock.start();
    const ChildProcess::Exit exit = this->agent().terminate();
    EXPECT_LT(clock.elapsed(), 1500 * slowness());
    EXPECT_EQ(exit.signal, 0);
    EXPECT_EQ(exit.code, 0);
    EXPECT_TRUE(this->choice().windows().empty());
    EXPECT_EQ(this->probe().focus(), window->window());
    EXPECT_TRUE(this->agent().filesInPictureFolder().isEmpty());
    EXPECT_TRUE(ClipboardReader(this->desktop().display()).targets().isEmpty());
    this->expectGlass(before, "quit");
}

TYPED_TEST(ChoiceLife, QuittingRightAfterAChoiceStillDoesIt) {
    this->ask();
    this->injector().tapKey(XK_3);
    require("the choice", [this] {
        return !this->agent().filesInPictureFolder().isEmpty() || !this->choice().isFocused();
    });
    EXPECT_EQ(this->agent().terminate().code, 0);
    EXPECT_EQ(this->agent().savedPictures().size(), 1);
}

TYPED_TEST(ChoiceLife, QuittingWhileItFadesIsNoTrouble) {
    this->ask();
    this->injector().tapKey(XK_Escape);
    EXPECT_EQ(this->agent().terminate().code, 0);
    EXPECT_TRUE(this->choice().windows().empty());
    EXPECT_TRUE(this->agent().filesInPictureFolder().isEmpty());
}

TYPED_TEST(ChoiceLife, AnotherCaptureTakesThePlaceOfTheOneAskedAbout) {
    const WindowInfo first = this->ask();
    this->agent().activateAction(u"capture-area"_s);
    this->agent().waitForOverlay();
    EXPECT_TRUE(this->choice().window().has_value());
    this->injector().drag(otherArea.topLeft(), otherArea.bottomRight() + QPoint(1, 1));
    ASSERT_TRUE(this->agent().waitForOverlayGone());
    this->choice().waitForWindow(first.id);
    EXPECT_EQ(this->choice().windows().size(), 1U);
    this->close({"Save", XK_3});
    EXPECT_EQ(this->waitForOutcome(), (ChoiceOutcome{false, 1}));
    EXPECT_EQ(QImage(this->waitForPicture()).size(), otherArea.size());
}

TYPED_TEST(ChoiceLife, SelectionOpensAboveTheQuestion) {
    const WindowInfo shown = this->ask();
    this->agent().activateAction(u"capture-area"_s);
    this->agent().waitForOverlay();
    // In the order of their stacking, the lowest first.
    const auto all = this->probe().windows();
    const auto overlay = std::ranges::find(all, u"Snapvane Selection"_s, &WindowInfo::name);
    const auto question = std::ranges::find(all, shown.id, &WindowInfo::id);
    ASSERT_NE(overlay, all.end());
    EXPECT_LT(question, overlay);
    this->injector().tapKey(XK_Escape);
    EXPECT_TRUE(this->agent().waitForOverlayGone());
}

TYPED_TEST(ChoiceLife, CancelledSelectionLeavesTheQuestion) {
    const WindowInfo shown = this->ask();
    this->agent().activateAction(u"capture-area"_s);
    this->agent().waitForOverlay();
    this->injector().tapKey(XK_Escape);
    ASSERT_TRUE(this->agent().waitForOverlayGone());
    EXPECT_EQ(this->choice().waitForWindow().id, shown.id);
    this->close({"Save", XK_3});
    EXPECT_EQ(QImage(this->waitForPicture()).size(), this->area.size());
}

/// Sends the key to the window as if the user had pressed it there, whoever has the keyboard.
void sendEscape(const VirtualDesktop& desktop, xcb_window_t window) {
    const XcbConnection& connection = desktop.connection();
    xcb_key_press_event_t event = {};
    event.response_type = XCB_KEY_PRESS;
    event.detail = Injector(connection).keyCodeFor(XK_Escape);
    event.time = XCB_CURRENT_TIME;
    event.root = connection.root();
    event.event = window;
    event.same_screen = 1;
    xcb_send_event(connection, 1, window, XCB_EVENT_MASK_KEY_PRESS,
                   reinterpret_cast<const char*>(&event));
    connection.sync();
}

class ChoiceInAFade : public ChoiceLife<Flavour<Compositor::Picom>> {
protected:
    /// Discards the capture that is asked about in the moment in which another one ends. True when
    /// the window that came for that one has gone by itself.
    bool secondWindowGoesByItself() {
        const WindowInfo first = ask();
        agent().activateAction(u"capture-area"_s);
        agent().waitForOverlay();
        injector().dragTo(otherArea.topLeft(), otherArea.bottomRight() + QPoint(1, 1));
        sendEscape(desktop(), first.id);
        injector().release();
        const bool came = waitUntil(
            [&] {
                const auto shown = choice().window();
                return shown && shown->id != first.id;
            },
            std::chrono::seconds(1), std::chrono::milliseconds(1));
        return came && choice().waitUntilGone(std::chrono::milliseconds(500));
    }
};

TEST_F(ChoiceInAFade, EndOfTheFadeTakesTheNewWindowAway) {
    // A capture that ends after the fade is asked about as ever.
    constexpr int patience = 10;
    int tries = 1;
    while (!secondWindowGoesByItself()) {
        ASSERT_LT(tries++, patience);
        if (choice().window()) {
            close({"Escape", XK_Escape});
        }
    }
    expectDiscarded();
    tap(hotKey);
    agent().waitForOverlay();
    injector().tapKey(XK_Escape);
    EXPECT_TRUE(agent().waitForOverlayGone());
    ask();
    close({"Save", XK_3});
    EXPECT_EQ(QImage(waitForPicture()).size(), area.size());
}

class ChoiceUnderAChangingCompositor : public ChoiceLife<Flavour<Compositor::None>> {
protected:
    void TearDown() override {
        ChoiceLife::TearDown();
        desktop().stopCompositor();
    }

    /// Checks that the user is asked anew, over the desktop and not over black, and is heard.
    void expectAskedAnew(xcb_window_t first, const QImage& before) {
        choice().waitForWindow(first);
        const QRegion beside = besideTheCard(desktop().rect(), card());
        EXPECT_TRUE(waitUntil([&] { return pixelsNotDimmed(before, glass(), beside) == 0; },
                              std::chrono::seconds(2)));
        EXPECT_EQ(choice().windows().size(), 1U);
        close({"Save", XK_3});
        EXPECT_EQ(waitForOutcome(), (ChoiceOutcome{false, 1}));
        waitForNoNotice();
        expectGlass(before, "compositor");
    }
};

TEST_F(ChoiceUnderAChangingCompositor, CompositorThatStarts) {
    const QImage before = settledGlass();
    const WindowInfo first = ask();
    desktop().startCompositor(Compositor::Picom);
    expectAskedAnew(first.id, before);
}

TEST_F(ChoiceUnderAChangingCompositor, CompositorThatStops) {
    desktop().startCompositor(Compositor::Picom);
    const QImage before = settledGlass();
    const WindowInfo first = ask();
    card();
    desktop().stopCompositor();
    expectAskedAnew(first.id, before);
}

TEST_F(ChoiceUnderAChangingCompositor, CompositorThatStartsAndStops) {
    const QImage before = settledGlass();
    const WindowInfo first = ask();
    desktop().startCompositor(Compositor::Picom);
    const WindowInfo second = choice().waitForWindow(first.id);
    desktop().stopCompositor();
    expectAskedAnew(second.id, before);
}

template <typename FlavourType> class ChoiceOnChangingScreens : public ChoiceLife<FlavourType> {
protected:
    static void SetUpTestSuite() {
        DesktopOptions options;
        options.screens = ScreenSet::TwoSideBySide;
        options.screenSize = {1280, 800};
        options.compositor = FlavourType::compositor;
        ChoiceSuite::startDesktop(options);
    }

    void TearDown() override {
        ChoiceLife<FlavourType>::TearDown();
        if (this->probe().monitorCount() == 1) {
            this->desktop().addRightScreen();
        }
    }

    static constexpr QRect onTheRight = {1700, 100, 200, 100};

    void expectCovers(int index) {
        EXPECT_TRUE(waitUntil(
            [&] {
                const auto shown = this->choice().window();
                return shown && shown->rect == this->desktop().screenRect(index) &&
                       this->choice().isFocused();
            },
            std::chrono::seconds(3)));
        (void)this->choice().waitForCard(this->desktop().screenRect(index));
    }

    void expectWorks(const QRect& selection) {
        this->close({"Save", XK_3});
        EXPECT_EQ(QImage(this->waitForPicture()).size(), selection.size());
    }
};

TYPED_TEST_SUITE(ChoiceOnChangingScreens, WithoutAndWithCompositor, FlavourNames);

TYPED_TEST(ChoiceOnChangingScreens, ScreenThatGoesLeavesTheQuestionOnTheOther) {
    this->ask(this->onTheRight);
    this->expectCovers(1);
    this->desktop().removeRightScreen();
    this->expectCovers(0);
    this->expectWorks(this->onTheRight);
}

TYPED_TEST(ChoiceOnChangingScreens, OtherScreenThatGoesIsNoTrouble) {
    this->ask();
    this->desktop().removeRightScreen();
    this->expectCovers(0);
    this->expectWorks(this->area);
}

TYPED_TEST(ChoiceOnChangingScreens, ScreenThatComesIsNoTrouble) {
    this->desktop().removeRightScreen();
    this->ask();
    this->desktop().addRightScreen();
    this->expectCovers(0);
    this->expectWorks(this->area);
}

TYPED_TEST(ChoiceOnChangingScreens, ScreenThatGoesAndComesBackIsCoveredAgain) {
    this->ask(this->onTheRight);
    this->desktop().removeRightScreen();
    this->expectCovers(0);
    this->desktop().addRightScreen();
    this->expectCovers(1);
    this->expectWorks(this->onTheRight);
}

} // namespace

} // namespace snapvane::testing
