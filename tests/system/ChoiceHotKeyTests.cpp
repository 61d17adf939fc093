// The global shortcut is off while the user is asked about a capture.

#include "ChoiceSuite.h"
#include "Wait.h"

#include <X11/keysym.h>

using namespace Qt::StringLiterals;

namespace snapvane::testing {

namespace {

template <typename FlavourType> class ChoiceHotKey : public FlavouredChoice<FlavourType> {
protected:
    void SetUp() override {
        FlavouredChoice<FlavourType>::SetUp();
        this->startAskingAgent();
    }

    /// Taps until a selection opens, as the shortcut may be taken up a moment later, and ends it.
    void expectHotKeyStarts() {
        const bool started = waitUntil(
            [this] {
                this->tap(hotKey);
                return waitUntil([this] { return this->agent().overlayCount() > 0; },
                                 std::chrono::milliseconds(300));
            },
            std::chrono::seconds(2));
        ASSERT_TRUE(started) << this->agent().log().toStdString();
        this->agent().waitForOverlay();
        this->injector().tapKey(XK_Escape);
        EXPECT_TRUE(this->agent().waitForOverlayGone());
    }

    void expectHotKeyIsOff() {
        this->tap(hotKey);
        EXPECT_FALSE(waitUntil([this] { return this->agent().overlayCount() > 0; },
                               std::chrono::milliseconds(200)));
    }
};

TYPED_TEST_SUITE(ChoiceHotKey, WithoutAndWithCompositor, FlavourNames);

TYPED_TEST(ChoiceHotKey, IsOffUntilTheWindowHasGone) {
    for (const Closing& closing : everyWayOfClosing()) {
        SCOPED_TRACE(closing.what);
        this->expectHotKeyStarts();
        this->ask();
        this->expectHotKeyIsOff();
        EXPECT_TRUE(this->choice().isFocused());
        this->close(closing);
    }
    this->expectHotKeyStarts();
}

TYPED_TEST(ChoiceHotKey, EscapeTwiceDiscardsOnce) {
    this->ask();
    this->injector().tapKey(XK_Escape);
    this->injector().tapKey(XK_Escape);
    this->expectDiscarded();
    this->expectHotKeyStarts();
    // Asked about anew, as before.
    this->ask();
    this->close({"Save", XK_3});
    EXPECT_EQ(this->waitForOutcome().files, 1);
}

} // namespace

} // namespace snapvane::testing
