// The global shortcut under lock keys and keyboard layouts: it is a place on the keyboard, not a
// letter.

#include "HotKeySuite.h"

using namespace Qt::StringLiterals;

namespace snapvane::testing {

namespace {

class HotKeyLayout : public HotKeySuite {
protected:
    static void SetUpTestSuite() {
        HotKeySuite::SetUpTestSuite();
        s_agent = std::make_unique<AgentProcess>(desktop());
        expectStartsSoon(*s_agent, soon);
    }
    static void TearDownTestSuite() {
        s_agent.reset();
        HotKeySuite::TearDownTestSuite();
    }
    static AgentProcess& agent() { return *s_agent; }

    void SetUp() override { ASSERT_TRUE(s_agent && s_agent->process().isRunning()); }
    void TearDown() override {
        HotKeySuite::TearDown();
        // With the keyboard as it was before.
        expectStartsSoon(agent(), soon);
    }

    static constexpr std::chrono::seconds soon{3};

private:
    static inline std::unique_ptr<AgentProcess> s_agent;
};

struct LockCase {
    const char* what;
    Keys keys;
    unsigned modifiers;
};

class HotKeyLocks : public HotKeyLayout, public ::testing::WithParamInterface<LockCase> {};

TEST_P(HotKeyLocks, MakeNoDifference) {
    for (const xcb_keycode_t key : GetParam().keys) {
        tap({key});
    }
    ASSERT_EQ(probe().modifiers(), GetParam().modifiers);
    expectStarts(agent());
    EXPECT_EQ(probe().modifiers(), GetParam().modifiers);
}

TEST_P(HotKeyLocks, MakeNoDifferenceDuringASelection) {
    for (const xcb_keycode_t key : GetParam().keys) {
        tap({key});
    }
    tap(hotKey);
    agent().waitForOverlay();
    const auto first = probe().windowsNamed(u"Snapvane Selection"_s);
    ASSERT_EQ(first.size(), 1U);
    tap(hotKey);
    require("another selection", [&] {
        const auto found = probe().viewableWindowNamed(u"Snapvane Selection"_s);
        return found && found->id != first.front().id;
    });
    agent().waitForOverlay();
    cancelSelection(agent());
}

INSTANTIATE_TEST_SUITE_P(
    Table, HotKeyLocks,
    ::testing::Values(LockCase{"CapsLock", {serverKey::capsLock}, XCB_MOD_MASK_LOCK},
                      LockCase{"NumLock", {serverKey::numLock}, XCB_MOD_MASK_2},
                      LockCase{"Both",
                               {serverKey::capsLock, serverKey::numLock},
                               XCB_MOD_MASK_LOCK | XCB_MOD_MASK_2}),
    [](const auto& row) { return std::string(row.param.what); });

struct LayoutCase {
    const char* what;
    const char16_t* layout;
    const char16_t* variant;
    /// What the hot key's letter key types.
    xcb_keysym_t symbol;
};

class HotKeyLayouts : public HotKeyLayout, public ::testing::WithParamInterface<LayoutCase> {};

TEST_P(HotKeyLayouts, TheSameKeyWorks) {
    setLayout({u"-layout"_s, QString::fromUtf16(GetParam().layout), u"-variant"_s,
               QString::fromUtf16(GetParam().variant)});
    ASSERT_EQ(injector().keyCodeFor(GetParam().symbol), serverKey::p);
    expectStartsSoon(agent(), soon);
    expectStarts(agent());
}

// The codes of the symbols: X11/keysymdef.h.
INSTANTIATE_TEST_SUITE_P(Table, HotKeyLayouts,
                         ::testing::Values(LayoutCase{"Russian", u"ru", u"", 0x6da},
                                           LayoutCase{"French", u"fr", u"", 'p'},
                                           LayoutCase{"Dvorak", u"us", u"dvorak", 'l'}),
                         [](const auto& row) { return std::string(row.param.what); });

TEST_F(HotKeyLayout, SecondLayoutInForce) {
    setLayout({u"-layout"_s, u"us,ru"_s, u"-option"_s, u"grp:sclk_toggle"_s});
    for (const int layout : {1, 0, 1}) {
        tap({serverKey::scrollLock});
        ASSERT_EQ(probe().layout(), layout);
        expectStartsSoon(agent(), soon);
        expectStarts(agent());
    }
    tap({serverKey::scrollLock});
}

TEST_F(HotKeyLayout, NumLockThatMovesToAnotherBit) {
    setModifiers({u"clear mod2"_s, u"clear mod3"_s, u"add mod3 = Num_Lock"_s});
    tap({serverKey::numLock});
    ASSERT_EQ(probe().modifiers(), XCB_MOD_MASK_3);
    expectStartsSoon(agent(), soon);
    tap({serverKey::capsLock});
    ASSERT_EQ(probe().modifiers(), XCB_MOD_MASK_3 | XCB_MOD_MASK_LOCK);
    expectStarts(agent());
}

} // namespace

} // namespace snapvane::testing
