// The global shortcut: what it starts, when, and whatever is in front.

#include "HotKeySuite.h"

#include <X11/keysym.h>

using namespace Qt::StringLiterals;

namespace snapvane::testing {

namespace {

/// Listens to the keys that another program's window is given.
class KeyListener {
public:
    KeyListener(const VirtualDesktop& desktop, xcb_window_t window)
        : m_connection(desktop.display()) {
        const uint32_t mask = XCB_EVENT_MASK_KEY_PRESS;
        xcb_change_window_attributes(m_connection, window, XCB_CW_EVENT_MASK, &mask);
        m_connection.sync();
    }

    /// How often the key has gone down since the last question.
    int presses(xcb_keycode_t key) {
        m_connection.sync();
        int count = 0;
        while (const Reply<xcb_generic_event_t> event{xcb_poll_for_event(m_connection)}) {
            const auto* press = reinterpret_cast<const xcb_key_press_event_t*>(event.get());
            count += (event->response_type & 0x7fU) == XCB_KEY_PRESS && press->detail == key;
        }
        return count;
    }

private:
    XcbConnection m_connection;
};

class HotKey : public HotKeySuite {
protected:
    static void SetUpTestSuite() {
        HotKeySuite::SetUpTestSuite();
        s_agent = std::make_unique<AgentProcess>(desktop());
        require("the tray icon", [] { return icon().has_value(); });
        expectStartsSoon(*s_agent, std::chrono::seconds(3));
    }
    static void TearDownTestSuite() {
        s_agent.reset();
        HotKeySuite::TearDownTestSuite();
    }
    static AgentProcess& agent() { return *s_agent; }

    void SetUp() override {
        ASSERT_TRUE(s_agent) << "the suite has no agent";
        ASSERT_TRUE(s_agent->process().isRunning()) << "the agent is gone";
        s_agent->clearPictures();
        m_logAtStart = s_agent->logMark();
    }
    void TearDown() override {
        if (s_agent && s_agent->overlayCount() > 0) {
            injector().release();
            cancelSelection(agent());
        }
        EXPECT_FALSE(s_agent->loggedError(m_logAtStart)) << agent().log(m_logAtStart).toStdString();
        HotKeySuite::TearDown();
    }

    static std::unique_ptr<TestClient> focusedWindow() {
        TestClient::Options options;
        options.rect = QRect(200, 200, 400, 300);
        auto window = std::make_unique<TestClient>(desktop(), options);
        injector().click({400, 350});
        require("the window to have the focus",
                [&] { return probe().focus() == window->window(); });
        return window;
    }
    static std::optional<xcb_window_t> overlay() {
        const auto found = probe().windowsNamed(u"Snapvane Selection"_s);
        return found.empty() ? std::nullopt : std::optional(found.front().id);
    }

private:
    static inline std::unique_ptr<AgentProcess> s_agent;
    qsizetype m_logAtStart = 0;
};

TEST_F(HotKey, ActsWhenItsKeyIsReleased) {
    press(hotKey);
    expectNoSelection(agent());
    release(hotKey);
    agent().waitForOverlay();
    cancelSelection(agent());
}

TEST_F(HotKey, ActsWhenTheModifiersAreReleasedFirst) {
    press(hotKey);
    release({serverKey::control, serverKey::shift});
    expectNoSelection(agent());
    release({serverKey::p});
    agent().waitForOverlay();
    cancelSelection(agent());
}

TEST_F(HotKey, DragAfterItIsSavedExactly) {
    const QRect rect(300, 200, 400, 300);
    const QImage expected = grabSettledScreen(desktop().connection(), desktop().rect()).copy(rect);
    tap(hotKey);
    agent().waitForOverlay();
    injector().drag({300, 200}, {700, 500});
    EXPECT_TRUE(samePicture(expected, QImage(agent().waitForPicture()), u"hot-key"_s));
    EXPECT_TRUE(agent().waitForOverlayGone());
    EXPECT_EQ(agent().filesInPictureFolder().size(), 1);
}

TEST_F(HotKey, WorksOverAnotherProgramsWindowWhichIsNotTold) {
    const auto window = focusedWindow();
    KeyListener listener(desktop(), window->window());
    tap({serverKey::p});
    ASSERT_EQ(listener.presses(serverKey::p), 1) << "the window is not given keys at all";
    expectStarts(agent());
    EXPECT_EQ(listener.presses(serverKey::p), 0);
}

TEST_F(HotKey, DuringASelectionStartsAnew) {
    tap(hotKey);
    agent().waitForOverlay();
    const auto before = overlay();
    injector().dragTo({600, 400}, {900, 700});
    tap(hotKey);
    require("another selection", [&] { return overlay() && overlay() != before; });
    agent().waitForOverlay();
    // The old drag's end belongs to no drag of the new selection.
    injector().release();
    pause(std::chrono::milliseconds(250));
    EXPECT_EQ(agent().overlayCount(), 1);
    EXPECT_TRUE(agent().filesInPictureFolder().isEmpty());
    injector().drag({300, 300}, {420, 410});
    EXPECT_EQ(QImage(agent().waitForPicture()).size(), QSize(120, 110));
    EXPECT_TRUE(agent().waitForOverlayGone());
}

TEST_F(HotKey, HeldDownStartsOneSelection) {
    const auto window = focusedWindow();
    KeyListener listener(desktop(), window->window());
    // The server repeats a key that is held; were it not to, holding would show nothing.
    int presses = 0;
    press({serverKey::p});
    require("a repeated key", [&] { return (presses += listener.presses(serverKey::p)) >= 3; });
    release({serverKey::p});

    press(hotKey);
    const bool early =
        waitUntil([] { return agent().overlayCount() > 0; }, std::chrono::milliseconds(2000));
    EXPECT_FALSE(early) << "it acts while it is held";
    release(hotKey);
    agent().waitForOverlay();
    const auto first = overlay();
    pause(std::chrono::milliseconds(300));
    EXPECT_EQ(overlay(), first) << "a second one has replaced the first";
    cancelSelection(agent());
    expectNoSelection(agent());
}

TEST_F(HotKey, HeldDownDuringASelectionStartsOneMore) {
    tap(hotKey);
    agent().waitForOverlay();
    const auto first = overlay();
    press(hotKey);
    // Longer than the server waits before it repeats a key.
    pause(std::chrono::milliseconds(1200));
    EXPECT_EQ(overlay(), first) << "it acts while it is held";
    release(hotKey);
    require("another selection", [&] { return overlay() && overlay() != first; });
    agent().waitForOverlay();
    const auto second = overlay();
    pause(std::chrono::milliseconds(300));
    EXPECT_EQ(overlay(), second);
    cancelSelection(agent());
    expectNoSelection(agent());
}

/// The selection's end gives the keyboard back, so that the release goes to another window; the
/// shortcut is released all the same, once.
TEST_F(HotKey, ReleasedAfterTheSelectionUnderItHasEnded) {
    tap(hotKey);
    agent().waitForOverlay();
    press(hotKey);
    cancelSelection(agent());
    release(hotKey);
    agent().waitForOverlay();
    const auto selection = overlay();
    tap({serverKey::p});
    pause(std::chrono::milliseconds(300));
    EXPECT_EQ(overlay(), selection) << "a letter has started another selection";
    cancelSelection(agent());
    expectStarts(agent());
}

TEST_F(HotKey, EveryReleaseCounts) {
    // The modifiers stay down, as they do in a hurry.
    press({serverKey::control, serverKey::shift});
    for (int round = 0; round < 2; ++round) {
        tap({serverKey::p});
        agent().waitForOverlay();
        cancelSelection(agent());
    }
}

struct OtherKeys {
    const char* what;
    Keys keys;
};

class OtherCombination : public HotKey, public ::testing::WithParamInterface<OtherKeys> {};

TEST_P(OtherCombination, StartsNothing) {
    tap(GetParam().keys);
    expectNoSelection(agent());
    expectStarts(agent());
}

using namespace serverKey;

INSTANTIATE_TEST_SUITE_P(Table, OtherCombination,
                         ::testing::Values(OtherKeys{"AnotherLetter", {control, shift, o}},
                                           OtherKeys{"TheLetterAlone", {p}},
                                           OtherKeys{"WithoutControl", {shift, p}},
                                           OtherKeys{"WithoutShift", {control, p}},
                                           OtherKeys{"WithAlt", {control, shift, alt, p}},
                                           OtherKeys{"WithSuper", {control, shift, super, p}}),
                         [](const auto& row) { return std::string(row.param.what); });

TEST_F(HotKey, StartsNothingWhileTheTrayMenuIsOpen) {
    ASSERT_FALSE(isFree(desktop()));
    openMenu();
    EXPECT_TRUE(waitUntil([] { return isFree(desktop()); }, std::chrono::seconds(2)));
    tap(hotKey);
    expectNoSelection(agent());
    EXPECT_TRUE(menu().has_value());
    closeMenu();
    expectNoSelection(agent());
    expectStarts(agent());
    EXPECT_FALSE(isFree(desktop()));
}

TEST_F(HotKey, WorksAfterAnEntryOfTheMenuWasChosen) {
    openMenu();
    injector().tapKey(XK_Down);
    injector().tapKey(XK_Return);
    agent().waitForOverlay();
    cancelSelection(agent());
    expectStarts(agent());
}

} // namespace

} // namespace snapvane::testing
