// Key grabs on a real server, with keys that are really pressed and other clients that are in the
// way.

#include "platform/x11/X11HotKeys.h"

#include "KeyboardFixture.h"
#include "support/Wait.h"

#include <gmock/gmock.h>

#include <QAbstractNativeEventFilter>
#include <QWidget>

#include <xcb/xinput.h>

using namespace Qt::StringLiterals;

namespace snapvane {

namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;
using testing::Reply;
using testing::XcbConnection;

constexpr std::uint32_t carbonP = 35;
constexpr std::uint32_t controlShift = CarbonModifier::control | CarbonModifier::shift;
constexpr HotKeyIdentifier mine{7, 1};

constexpr HotKeyEventType hotKeyEvents[] = {{.kind = HotKeyEventKind::HotKeyPressed},
                                            {.kind = HotKeyEventKind::HotKeyReleased}};
constexpr HotKeyEventType rawEvents[] = {{.kind = HotKeyEventKind::RawKeyDown},
                                         {.kind = HotKeyEventKind::RawKeyUp}};

/// Another program that holds key combinations.
class OtherClient {
public:
    OtherClient() : m_connection(testDesktop().display()) {}

    /// False when the server refuses.
    bool grab(xcb_keycode_t key, std::uint16_t modifiers) {
        const auto cookie = xcb_grab_key_checked(m_connection, 0, m_connection.root(), modifiers,
                                                 key, XCB_GRAB_MODE_ASYNC, XCB_GRAB_MODE_ASYNC);
        const Reply<xcb_generic_error_t> error(xcb_request_check(m_connection, cookie));
        return error == nullptr;
    }

private:
    XcbConnection m_connection;
};

constexpr std::uint16_t controlShiftBits = XCB_MOD_MASK_CONTROL | XCB_MOD_MASK_SHIFT;

class X11HotKeysTest : public KeyboardTest {
public:
    X11HotKeysTest() {
        m_hotKeys.installEventHandler([this](const HotKeyEvent& event) {
            const bool isRaw = event.type.kind == HotKeyEventKind::RawKeyDown ||
                               event.type.kind == HotKeyEventKind::RawKeyUp;
            m_events.push_back(isRaw ? rawText(event) : hotText(event));
            return m_answer;
        });
        m_hotKeys.addEventTypes(hotKeyEvents);
    }

protected:
    std::unique_ptr<HotKeyRegistration> registerKey(std::uint32_t keyCode = carbonP,
                                                    std::uint32_t modifiers = controlShift) {
        return m_hotKeys.registerHotKey(keyCode, modifiers, mine, [this] { ++m_lost; });
    }
    /// What came, once nothing more comes.
    std::vector<std::string> news() {
        settle();
        return std::exchange(m_events, {});
    }
    void pressAll() { down({serverKey::control, serverKey::shift, serverKey::p}); }
    void releaseAll() { up({serverKey::p, serverKey::shift, serverKey::control}); }

    x11::X11HotKeys m_hotKeys{m_keyboard};
    std::vector<std::string> m_events;
    std::int32_t m_answer = hotKeyEventHandled;
    int m_lost = 0;

private:
    static std::string hotText(const HotKeyEvent& event) {
        const bool isPress = event.type.kind == HotKeyEventKind::HotKeyPressed;
        return (isPress ? "pressed " : "released ") + std::to_string(event.identifier.signature) +
               "/" + std::to_string(event.identifier.id);
    }
    static std::string rawText(const HotKeyEvent& event) {
        const bool isPress = event.type.kind == HotKeyEventKind::RawKeyDown;
        return (isPress ? "down " : "up ") + std::to_string(event.keyCode) + "+" +
               std::to_string(event.modifiers) + (event.isRepeat ? " again" : "");
    }
};

TEST_F(X11HotKeysTest, PressAndReleaseCarryTheIdentifier) {
    const auto registration = registerKey();
    ASSERT_NE(registration, nullptr);
    pressAll();
    EXPECT_THAT(news(), ElementsAre("pressed 7/1"));
    releaseAll();
    EXPECT_THAT(news(), ElementsAre("released 7/1"));
}

TEST_F(X11HotKeysTest, AHeldKeyIsPressedOnceAndReleasedOnce) {
    const auto registration = registerKey();
    pressAll();
    // The server begins to repeat after two thirds of a second.
    for (int i = 0; i < 4; ++i) {
        settle();
    }
    EXPECT_THAT(news(), ElementsAre("pressed 7/1"));
    releaseAll();
    EXPECT_THAT(news(), ElementsAre("released 7/1"));
}

TEST_F(X11HotKeysTest, TheReleaseCountsWithoutTheModifiers) {
    const auto registration = registerKey();
    pressAll();
    up({serverKey::control, serverKey::shift});
    EXPECT_THAT(news(), ElementsAre("pressed 7/1"));
    up({serverKey::p});
    EXPECT_THAT(news(), ElementsAre("released 7/1"));
}

TEST_F(X11HotKeysTest, LockKeysDoNotMatter) {
    const auto registration = registerKey();
    for (const auto& locks : std::vector<std::vector<xcb_keycode_t>>{
             {serverKey::capsLock}, {serverKey::numLock}, {serverKey::capsLock}}) {
        for (const xcb_keycode_t key : locks) {
            lock(key); // Caps; caps and num; num, as the second tap turns caps off.
        }
        pressAll();
        releaseAll();
        EXPECT_THAT(news(), ElementsAre("pressed 7/1", "released 7/1"));
    }
}

TEST_F(X11HotKeysTest, EveryModifierCountsAndNoOtherMayBeHeld) {
    const struct {
        std::uint32_t carbon;
        std::vector<xcb_keycode_t> keys;
    } table[] = {{CarbonModifier::option, {serverKey::alt}},
                 {CarbonModifier::command, {serverKey::super}},
                 {CarbonModifier::command | CarbonModifier::option | CarbonModifier::control,
                  {serverKey::super, serverKey::alt, serverKey::control}},
                 {CarbonModifier::shift, {serverKey::shift}},
                 {0, {}}};
    for (const auto& row : table) {
        const auto registration = registerKey(carbonP, row.carbon);
        ASSERT_NE(registration, nullptr) << row.carbon;
        for (const xcb_keycode_t key : row.keys) {
            down({key});
        }
        tap(serverKey::p);
        tap(serverKey::o);
        for (const xcb_keycode_t key : row.keys) {
            up({key});
        }
        EXPECT_THAT(news(), ElementsAre("pressed 7/1", "released 7/1")) << row.carbon;
        down({serverKey::control, serverKey::alt, serverKey::shift});
        tap(serverKey::p);
        up({serverKey::shift, serverKey::alt, serverKey::control});
        EXPECT_THAT(news(), IsEmpty()) << row.carbon;
    }
}

TEST_F(X11HotKeysTest, WorksInLayoutsOfOtherAlphabets) {
    const auto registration = registerKey();
    for (const QString& layout : {u"ru"_s, u"fr"_s, u"us,ru"_s}) {
        setLayout(layout);
        pressAll();
        releaseAll();
        EXPECT_THAT(news(), ElementsAre("pressed 7/1", "released 7/1")) << layout.toStdString();
    }
}

TEST_F(X11HotKeysTest, AKeyThatStandsForTwoActsThroughBoth) {
    constexpr std::uint32_t carbonF15 = 113;
    const auto registration = registerKey(carbonF15, 0);
    ASSERT_NE(registration, nullptr);
    tap(serverKey::pause);
    EXPECT_THAT(news(), ElementsAre("pressed 7/1", "released 7/1"));
    tap(serverKey::f15);
    EXPECT_THAT(news(), ElementsAre("pressed 7/1", "released 7/1"));
}

TEST_F(X11HotKeysTest, WhatAnotherProgramHoldsIsRefusedAndNothingIsKept) {
    OtherClient other;
    // One of the combinations with a lock key is enough.
    ASSERT_TRUE(other.grab(serverKey::p, controlShiftBits | XCB_MOD_MASK_LOCK));
    EXPECT_EQ(registerKey(), nullptr);
    EXPECT_TRUE(other.grab(serverKey::p, controlShiftBits));
    EXPECT_TRUE(other.grab(serverKey::p, controlShiftBits | XCB_MOD_MASK_2));
    EXPECT_EQ(m_lost, 0);
}

TEST_F(X11HotKeysTest, AFreedCombinationCanBeHadAgain) {
    {
        OtherClient other;
        ASSERT_TRUE(other.grab(serverKey::p, controlShiftBits));
        EXPECT_EQ(registerKey(), nullptr);
    }
    settle();
    EXPECT_NE(registerKey(), nullptr);
}

TEST_F(X11HotKeysTest, ADroppedRegistrationFreesTheCombination) {
    OtherClient other;
    auto registration = registerKey();
    EXPECT_FALSE(other.grab(serverKey::p, controlShiftBits));
    registration.reset();
    settle();
    pressAll();
    releaseAll();
    EXPECT_THAT(news(), IsEmpty());
    EXPECT_TRUE(other.grab(serverKey::p, controlShiftBits));
}

TEST_F(X11HotKeysTest, WhatNoKeyboardHereCanTypeIsRefused) {
    constexpr std::uint32_t noKey = 127;
    constexpr std::uint32_t functionKey = 63;
    EXPECT_EQ(registerKey(noKey, controlShift), nullptr);
    EXPECT_EQ(registerKey(functionKey, 0), nullptr) << "beyond the server's codes";
    EXPECT_EQ(registerKey(carbonP, CarbonModifier::function), nullptr);
    EXPECT_EQ(registerKey(0xffffffff, 0), nullptr);
}

TEST_F(X11HotKeysTest, NothingComesOfTypesThatAreNotAskedFor) {
    const auto registration = registerKey();
    m_hotKeys.removeEventTypes(hotKeyEvents);
    pressAll();
    releaseAll();
    EXPECT_THAT(news(), IsEmpty());
}

TEST_F(X11HotKeysTest, TellsWhatAnotherProgramHolds) {
    OtherClient other;
    EXPECT_FALSE(m_hotKeys.isHeldElsewhere(carbonP, controlShift));
    EXPECT_TRUE(other.grab(serverKey::p, controlShiftBits)) << "trying must not keep it";
    EXPECT_TRUE(m_hotKeys.isHeldElsewhere(carbonP, controlShift));
    EXPECT_FALSE(m_hotKeys.isHeldElsewhere(127, controlShift));
    const auto registration = registerKey(carbonP, CarbonModifier::command);
    EXPECT_FALSE(m_hotKeys.isHeldElsewhere(carbonP, CarbonModifier::command));
    down({serverKey::super});
    tap(serverKey::p);
    up({serverKey::super});
    EXPECT_THAT(news(), ElementsAre("pressed 7/1", "released 7/1")) << "asking must not free it";
}

TEST_F(X11HotKeysTest, IsTakenAnewWhenALockMovesToAnotherBit) {
    const auto registration = registerKey();
    remap(u"xmodmap"_s, {u"-e"_s, u"clear mod2"_s, u"-e"_s, u"add mod3 = Num_Lock"_s});
    ASSERT_EQ(m_keyboard.modifiers().numLock, XCB_MOD_MASK_3);
    lock(serverKey::numLock);
    pressAll();
    releaseAll();
    EXPECT_THAT(news(), ElementsAre("pressed 7/1", "released 7/1"));
    EXPECT_EQ(m_lost, 0);
}

TEST_F(X11HotKeysTest, IsLostWhenItCannotBeTakenAnew) {
    OtherClient other;
    ASSERT_TRUE(other.grab(serverKey::p, controlShiftBits | XCB_MOD_MASK_3));
    auto registration = registerKey();
    ASSERT_NE(registration, nullptr);
    remap(u"xmodmap"_s, {u"-e"_s, u"clear mod2"_s, u"-e"_s, u"add mod3 = Num_Lock"_s});
    EXPECT_EQ(m_lost, 1);
    EXPECT_TRUE(other.grab(serverKey::p, controlShiftBits)) << "nothing of it may be kept";
    registration.reset();
}

TEST_F(X11HotKeysTest, OutlastsAModifierThatIsGoneForAMoment) {
    const auto registration = registerKey(carbonP, CarbonModifier::command);
    ASSERT_NE(registration, nullptr);
    remap(u"xmodmap"_s, {u"-e"_s, u"clear mod4"_s});
    EXPECT_EQ(m_keyboard.modifiers().command, 0);
    tap(serverKey::p);
    EXPECT_THAT(news(), IsEmpty()) << "the letter alone is no hot key";
    EXPECT_EQ(registerKey(carbonP, CarbonModifier::command | CarbonModifier::shift), nullptr);
    remap(u"xmodmap"_s, {u"-e"_s, u"add mod3 = Super_L"_s});
    down({serverKey::super});
    tap(serverKey::p);
    up({serverKey::super});
    EXPECT_THAT(news(), ElementsAre("pressed 7/1", "released 7/1"));
    EXPECT_EQ(m_lost, 0);
}

TEST_F(X11HotKeysTest, ScrollLockDoesNotMatterWhereItIsALock) {
    remap(u"xmodmap"_s, {u"-e"_s, u"add mod3 = Scroll_Lock"_s});
    ASSERT_EQ(m_keyboard.modifiers().scrollLock, XCB_MOD_MASK_3);
    const auto registration = registerKey();
    lock(serverKey::scrollLock);
    pressAll();
    releaseAll();
    EXPECT_THAT(news(), ElementsAre("pressed 7/1", "released 7/1"));
}

TEST_F(X11HotKeysTest, MetaIsTheCommandKeyWhereThereIsNoSuper) {
    remap(u"xmodmap"_s, {u"-e"_s, u"clear mod4"_s, u"-e"_s, u"clear mod1"_s, u"-e"_s,
                         u"keycode 64 = Alt_L"_s, u"-e"_s, u"keycode 108 = Alt_R"_s, u"-e"_s,
                         u"keycode 205 = NoSymbol"_s, u"-e"_s, u"keycode 133 = Meta_L"_s});
    remap(u"xmodmap"_s, {u"-e"_s, u"add mod1 = Alt_R"_s, u"-e"_s, u"add mod3 = Meta_L"_s});
    EXPECT_EQ(m_keyboard.modifiers().option, XCB_MOD_MASK_1);
    EXPECT_EQ(m_keyboard.modifiers().command, XCB_MOD_MASK_3);
}

TEST_F(X11HotKeysTest, AKeyBelongsToTheHotKeyThatItWentDownAs) {
    const auto plain = registerKey(carbonP, CarbonModifier::control);
    const auto shifted = m_hotKeys.registerHotKey(carbonP, controlShift, {7, 2}, [] {});
    ASSERT_TRUE(plain && shifted);
    down({serverKey::control, serverKey::p});
    for (int i = 0; i < 3; ++i) {
        settle(); // The server repeats the key by now.
    }
    down({serverKey::shift});
    settle();
    up({serverKey::p, serverKey::shift, serverKey::control});
    EXPECT_THAT(news(), ElementsAre("pressed 7/1", "released 7/1"));
    tap(serverKey::p);
    EXPECT_THAT(news(), IsEmpty());
}

TEST_F(X11HotKeysTest, WhatIsOursAlreadyIsRefused) {
    const auto registration = registerKey();
    EXPECT_EQ(registerKey(), nullptr);
    pressAll();
    releaseAll();
    EXPECT_THAT(news(), ElementsAre("pressed 7/1", "released 7/1"));
}

TEST_F(X11HotKeysTest, AKeyThatIsDownAlreadyCountsFromItsNextPressOn) {
    pressAll();
    const auto registration = registerKey();
    for (int i = 0; i < 3; ++i) {
        settle(); // The server repeats the key by now.
    }
    releaseAll();
    EXPECT_THAT(news(), IsEmpty());
    pressAll();
    releaseAll();
    EXPECT_THAT(news(), ElementsAre("pressed 7/1", "released 7/1"));
}

TEST_F(X11HotKeysTest, WhatAnotherClientMakesUpIsNoKey) {
    const auto registration = registerKey();
    QWidget window;
    window.show();
    settle();
    XcbConnection other(testDesktop().display());
    for (const int type : {XCB_KEY_PRESS, XCB_KEY_RELEASE}) {
        xcb_key_press_event_t event = {};
        event.response_type = static_cast<std::uint8_t>(type);
        event.detail = serverKey::p;
        event.root = other.root();
        event.event = other.root();
        event.state = controlShiftBits;
        xcb_send_event(other, 0, static_cast<xcb_window_t>(window.winId()), XCB_EVENT_MASK_NO_EVENT,
                       reinterpret_cast<const char*>(&event));
    }
    other.sync();
    EXPECT_THAT(news(), IsEmpty());
}

/// Counts what the keyboard itself tells this program.
class DeviceWatch : public QAbstractNativeEventFilter {
public:
    DeviceWatch() { QCoreApplication::instance()->installNativeEventFilter(this); }

    bool nativeEventFilter(const QByteArray&, void* message, qintptr*) override {
        const auto& event = *static_cast<const xcb_ge_generic_event_t*>(message);
        const bool isGeneric = (event.response_type & 0x7f) == XCB_GE_GENERIC;
        releases += isGeneric && event.event_type == XCB_INPUT_RAW_KEY_RELEASE ? 1 : 0;
        return false;
    }

    int releases = 0;
};

TEST_F(X11HotKeysTest, TheKeyboardIsListenedToOnlyWhileTheKeyIsDown) {
    const DeviceWatch watch;
    pressAll();
    auto registration = registerKey();
    tap(serverKey::a);
    settle();
    EXPECT_EQ(watch.releases, 1);
    releaseAll();
    settle();
    const int soFar = watch.releases;
    tap(serverKey::a);
    settle();
    EXPECT_EQ(watch.releases, soFar) << "after it was released";

    pressAll();
    settle();
    registration.reset();
    releaseAll();
    tap(serverKey::a);
    settle();
    EXPECT_EQ(watch.releases, soFar) << "after the hot key was given up";
}

class RawKeysTest : public X11HotKeysTest {
public:
    RawKeysTest() {
        m_hotKeys.removeEventTypes(hotKeyEvents);
        m_hotKeys.addEventTypes(rawEvents);
        m_window.setGeometry(100, 100, 300, 200);
        m_window.setFocusPolicy(Qt::StrongFocus);
        m_window.show();
        m_window.activateWindow();
        EXPECT_TRUE(waitForEvents([this] { return m_window.isActiveWindow(); }));
        settle();
    }

protected:
    class Window : public QWidget {
    public:
        int presses = 0;

    protected:
        void keyPressEvent(QKeyEvent*) override { ++presses; }
    };

    Window m_window;
};

TEST_F(RawKeysTest, EveryKeyOfOurWindowsComesOnce) {
    pressAll();
    releaseAll();
    EXPECT_THAT(news(), ElementsAre("down 59+0", "down 56+4096", "down 35+4608", "up 35+4608",
                                    "up 56+4608", "up 59+4096"));
}

TEST_F(RawKeysTest, AHeldKeyIsMarkedAsSuch) {
    down({serverKey::a});
    for (int i = 0; i < 4; ++i) {
        settle();
    }
    up({serverKey::a});
    const auto events = news();
    ASSERT_GT(events.size(), 3U);
    EXPECT_EQ(events.front(), "down 0+0");
    EXPECT_EQ(events[1], "down 0+0 again");
    EXPECT_EQ(events.back(), "up 0+0");
    EXPECT_EQ(std::ranges::count(events, "up 0+0"), 1);
}

TEST_F(RawKeysTest, WhatIsHandledGoesNowhereElse) {
    m_answer = hotKeyEventHandled;
    tap(serverKey::a);
    settle();
    EXPECT_EQ(m_window.presses, 0);
    m_answer = hotKeyEventNotHandled;
    tap(serverKey::a);
    settle();
    EXPECT_EQ(m_window.presses, 1);
}

TEST_F(RawKeysTest, KeysOfOtherProgramsStayTheirs) {
    m_window.hide();
    settle();
    m_events.clear();
    tap(serverKey::a);
    EXPECT_THAT(news(), IsEmpty());
}

} // namespace

} // namespace snapvane
