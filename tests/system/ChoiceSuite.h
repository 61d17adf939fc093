#pragma once

#include "AfterCaptureSuite.h"
#include "ChoiceProbe.h"
#include "ClipboardReader.h"
#include "Flavours.h"
#include "HotKeySuite.h"

namespace snapvane::testing {

/// What a capture has led to.
struct ChoiceOutcome {
    bool isCopied = false;
    int files = 0;

    bool operator==(const ChoiceOutcome&) const = default;
};

/// A way for the user to be done with the window: a key, or a click on a row.
struct Closing {
    const char* what = "";
    xcb_keysym_t key = XCB_NO_SYMBOL;
    ChoiceRow row = ChoiceRow::Cancel;
};

/// All that differ in what they go through.
const std::vector<Closing>& everyWayOfClosing();

/// A desktop for all the tests of a suite and for each test an agent that asks after every capture.
/// Each test leaves the keyboard as it found it: no key down, no lock on, a US layout.
class ChoiceSuite : public AfterCaptureSuite {
protected:
    /// What is asked about unless a test wants something else; its thumbnail leaves the card's
    /// border free.
    static constexpr QRect area = {100, 100, 200, 100};

    static void SetUpTestSuite() { startChoiceDesktop(Compositor::None); }
    static void startChoiceDesktop(Compositor compositor);
    void TearDown() override;

    /// The saved defaults are comma-separated actions, in INI syntax.
    void startAskingAgent(const QByteArray& savedDefaults = "copyToClipboard, saveToFolder",
                          const AgentOptions& options = {});
    /// Captures and returns when the user is asked about it.
    WindowInfo ask(const QRect& rect = area);

    static ChoiceProbe choice() { return ChoiceProbe(desktop()); }
    /// On the first screen.
    static ChoiceCard card() { return choice().waitForCard(desktop().screenRect(0)); }
    static void click(const QRect& place) { injector().click(place.center()); }
    /// Returns when the window has gone.
    static void close(const Closing& closing);

    static void tap(const Keys& keys);
    /// Runs setxkbmap, or xmodmap with these expressions.
    void setLayout(const QStringList& arguments);
    void setKeys(const QStringList& expressions);

    /// Waits until an action has told that it is done; gives what has come of it.
    ChoiceOutcome waitForOutcome();
    /// Checks that the window goes and that nothing at all comes of the capture.
    void expectDiscarded();

private:
    void resetKeyboard();

    bool m_isMapChanged = false;
};

/// Without transparency and with it.
using WithoutAndWithCompositor =
    ::testing::Types<Flavour<Compositor::None>, Flavour<Compositor::Picom>>;

template <typename FlavourType> class FlavouredChoice : public ChoiceSuite {
protected:
    static void SetUpTestSuite() { startChoiceDesktop(FlavourType::compositor); }
};

} // namespace snapvane::testing
