// Whose keyboard it is while the user is asked about a capture, and afterwards.

#include "ChoiceSuite.h"
#include "NoticeBystander.h"
#include "Wait.h"

#include <X11/keysym.h>

using namespace Qt::StringLiterals;

namespace snapvane::testing {

namespace {

constexpr QRect someWindow(700, 500, 400, 200);
constexpr QRect anotherWindow(60, 420, 200, 200);
constexpr QPoint onTheDim(60, 60);

/// Applications in which the user works.
template <typename FlavourType> class ChoiceFocus : public FlavouredChoice<FlavourType> {
protected:
    void SetUp() override {
        FlavouredChoice<FlavourType>::SetUp();
        this->startAskingAgent();
        give(first);
    }

    /// As the user does.
    void give(NoticeBystander& window) {
        const auto all = this->probe().windows();
        const auto found = std::ranges::find(all, window.window(), &WindowInfo::id);
        ASSERT_NE(found, all.end());
        this->injector().click(found->rect.center());
        waitForFocus(window.window());
        window.takeKeys();
        window.takeClicks();
    }

    /// As an application does that comes to the front, after the window has asked for the keyboard
    /// for the last time: it is painted by then.
    void grabFor(const NoticeBystander& window) {
        xcb_set_input_focus(this->desktop().connection(), XCB_INPUT_FOCUS_POINTER_ROOT,
                            window.window(), XCB_CURRENT_TIME);
        waitForFocus(window.window());
    }

    void waitForFocus(xcb_window_t window) {
        require("the keyboard to be there", [&] { return this->probe().focus() == window; });
    }

    /// Checks that what the user types next arrives there, and that nothing else has.
    void expectTypesInto(NoticeBystander& window) {
        EXPECT_TRUE(waitUntil([&] { return this->probe().focus() == window.window(); },
                              std::chrono::seconds(1)));
        this->injector().tapKey(XK_a);
        EXPECT_EQ(window.takeKeys(), Keys{serverKey::a});
    }

    NoticeBystander first{this->desktop().display(), NoticeBystander::Kind::Plain, someWindow};
    NoticeBystander second{this->desktop().display(), NoticeBystander::Kind::Plain, anotherWindow};
};

TYPED_TEST_SUITE(ChoiceFocus, WithoutAndWithCompositor, FlavourNames);

TYPED_TEST(ChoiceFocus, ComesBackAfterEachWayOfClosing) {
    for (const Closing& closing : everyWayOfClosing()) {
        SCOPED_TRACE(closing.what);
        this->ask();
        this->close(closing);
        this->expectTypesInto(this->first);
        // The window manager hears of it a moment later.
        EXPECT_TRUE(waitUntil(
            [this] {
                const xcb_window_t root = this->desktop().connection().root();
                return this->probe().number(root, "_NET_ACTIVE_WINDOW") == this->first.window();
            },
            std::chrono::seconds(1)));
    }
    EXPECT_EQ(this->first.takeClicks() + this->second.takeClicks(), 0);
}

TYPED_TEST(ChoiceFocus, KeysDoNotReachTheApplication) {
    this->ask();
    for (const auto key : {XK_a, XK_space, XK_F5, XK_Tab}) {
        this->injector().tapKey(static_cast<xcb_keysym_t>(key));
    }
    EXPECT_TRUE(this->choice().isFocused());
    this->close({"Escape", XK_Escape});
    EXPECT_TRUE(this->first.takeKeys().empty());
}

TYPED_TEST(ChoiceFocus, ClickTakesItAgain) {
    const WindowInfo shown = this->ask();
    this->card();
    this->grabFor(this->second);
    this->injector().click(onTheDim);
    this->waitForFocus(shown.id);
    this->close({"Save", XK_3});
    EXPECT_EQ(this->waitForOutcome().files, 1);
    this->expectTypesInto(this->second);
    EXPECT_TRUE(this->first.takeKeys().empty());
}

TYPED_TEST(ChoiceFocus, StaysWithTheWindowThatTookIt) {
    this->ask();
    this->card();
    this->grabFor(this->second);
    EXPECT_EQ(this->agent().terminate().code, 0);
    EXPECT_FALSE(this->choice().window().has_value());
    this->expectTypesInto(this->second);
    EXPECT_TRUE(this->first.takeKeys().empty());
}

TYPED_TEST(ChoiceFocus, ApplicationThatHasGoneMeanwhileIsNoTrouble) {
    auto third = std::make_unique<NoticeBystander>(
        this->desktop().display(), NoticeBystander::Kind::OverrideRedirect, QRect(0, 0, 50, 50));
    this->grabFor(*third);
    this->ask();
    third.reset();
    this->close({"Save", XK_3});
    EXPECT_EQ(this->waitForOutcome().files, 1);
    this->give(this->second);
    this->expectTypesInto(this->second);
}

/// A compositor lets the window fade, in which time it is still there.
class ChoiceFocusWhileFading : public ChoiceFocus<Flavour<Compositor::Picom>> {};

TEST_F(ChoiceFocusWhileFading, StaysWithTheWindowThatTookIt) {
    ask();
    card();
    injector().tapKey(XK_Escape);
    grabFor(second);
    EXPECT_TRUE(choice().waitUntilGone());
    expectTypesInto(second);
    EXPECT_TRUE(first.takeKeys().empty());
}

} // namespace

} // namespace snapvane::testing
