// What the keys type in the layouts of real users.

#include "platform/x11/X11KeyboardLayout.h"

#include "KeyboardFixture.h"
#include "support/QtPrinting.h"

#include <QKeyEvent>

#include <xkbcommon/xkbcommon-keysyms.h>

using namespace Qt::StringLiterals;

namespace snapvane {

namespace {

struct Typed {
    const char* layouts;
    std::uint16_t keyCode;
    const char* text; // Empty for nothing.
};

class X11KeyboardLayoutTest : public KeyboardTest {
public:
    X11KeyboardLayoutTest() {
        QObject::connect(&m_layout, &KeyboardLayout::changed, &m_layout, [this] { ++m_changes; });
    }

protected:
    QString typed(std::uint16_t keyCode) { return m_layout.translate(keyCode).value_or(QString()); }
    void lockGroup(std::uint8_t group) {
        xkbLock(group);
        settle();
    }

    x11::X11KeyboardLayout m_layout{m_keyboard};
    int m_changes = 0;

private:
    static void xkbLock(std::uint8_t group) {
        // By the key that switches in this layout's options.
        for (int step = 0; step < group; ++step) {
            testing::Injector hands(testDesktop().connection());
            hands.tapKey(XKB_KEY_ISO_Next_Group);
        }
    }
};

TEST_F(X11KeyboardLayoutTest, LayoutsOfLatinAlphabetsTypeTheirOwnCharacters) {
    const Typed table[] = {{"us", 35, "p"}, {"us", 0, "a"},       {"us", 18, "1"},
                           {"us", 43, ","}, {"us", 50, "`"},      {"fr", 35, "p"},
                           {"fr", 0, "q"},  {"fr", 18, "&"},      {"fr", 41, "m"},
                           {"fr", 33, "^"}, {"de", 16, "z"},      {"de", 41, "ö"},
                           {"de", 27, "ß"}, {"de", 24, "\u00b4"}, {"dvorak", 35, "l"},
                           {"tr", 34, "ı"}, {"tr", 39, "i"}};
    QString current;
    for (const Typed& row : table) {
        if (current != QLatin1String(row.layouts)) {
            current = QLatin1String(row.layouts);
            remap(u"setxkbmap"_s, {current == u"dvorak"_s ? u"us(dvorak)"_s : current});
        }
        EXPECT_EQ(typed(row.keyCode), QString::fromUtf8(row.text))
            << row.layouts << " " << row.keyCode;
    }
}

TEST_F(X11KeyboardLayoutTest, KeysThatTypeNothingGiveNothing) {
    for (const std::uint16_t keyCode :
         std::to_array<std::uint16_t>({53, 55, 56, 57, 59, 63, 74, 122, 126, 36, 48})) {
        EXPECT_EQ(m_layout.translate(keyCode), std::nullopt) << keyCode;
    }
    EXPECT_EQ(m_layout.translate(127), std::nullopt);
    EXPECT_EQ(m_layout.translate(65535), std::nullopt);
}

TEST_F(X11KeyboardLayoutTest, WithoutAnyLatinLayoutTheUsKeyboardCounts) {
    setLayout(u"ru"_s);
    EXPECT_EQ(typed(35), u"p"_s);
    EXPECT_EQ(typed(0), u"a"_s);
    setLayout(u"gr"_s);
    EXPECT_EQ(typed(35), u"p"_s);
}

TEST_F(X11KeyboardLayoutTest, AnotherLatinLayoutOfTheUserStandsInForACyrillicOne) {
    remap(u"setxkbmap"_s, {u"-layout"_s, u"ru,fr"_s, u"-option"_s, u"grp:menu_toggle"_s});
    EXPECT_EQ(typed(0), u"q"_s);
    testDesktop().run(u"setxkbmap"_s, {u"-option"_s, u""_s});
}

TEST_F(X11KeyboardLayoutTest, TheLayoutInForceCountsAndASwitchIsTold) {
    remap(u"setxkbmap"_s, {u"-layout"_s, u"us,fr,ru"_s, u"-option"_s, u"grp:menu_toggle"_s});
    EXPECT_EQ(typed(0), u"a"_s);
    m_changes = 0;
    lockGroup(1);
    EXPECT_TRUE(waitForEvents([this] { return m_changes > 0; }));
    EXPECT_EQ(typed(0), u"q"_s);
    lockGroup(1);
    // The first Latin layout of the user's stands in for the Cyrillic one.
    EXPECT_EQ(typed(0), u"a"_s);
    lockGroup(1);
    testDesktop().run(u"setxkbmap"_s, {u"-option"_s, u""_s});
}

TEST_F(X11KeyboardLayoutTest, AChangeOfTheKeyboardIsTold) {
    setLayout(u"fr"_s);
    EXPECT_GT(m_changes, 0);
}

TEST_F(X11KeyboardLayoutTest, SymbolsAreFoundOnTheKeysThatGiveThem) {
    const std::pair<xkb_keysym_t, std::optional<int>> table[] = {
        {XKB_KEY_p, 35},       {XKB_KEY_Print, 105}, {XKB_KEY_F12, 111},  {XKB_KEY_Insert, 114},
        {XKB_KEY_KP_5, 87},    {XKB_KEY_KP_Add, 69}, {XKB_KEY_space, 49}, {XKB_KEY_Escape, 53},
        {XKB_KEY_Super_L, 55}, {XKB_KEY_Up, 126},    {XKB_KEY_P, {}},     {XKB_KEY_Cyrillic_ef, {}},
        {0x1008ff12, 74}}; // mute, from XF86keysym.h
    for (const auto& [symbol, keyCode] : table) {
        EXPECT_EQ(x11::keyOfSymbol(m_keyboard, symbol), keyCode) << symbol;
    }
    setLayout(u"fr"_s);
    EXPECT_EQ(x11::keyOfSymbol(m_keyboard, XKB_KEY_a), 12);
}

struct Pressed {
    const char* layouts;
    xcb_keycode_t key; // The server's code.
    bool shift;
    std::uint32_t layout;
    const char* text;
};

TEST_F(X11KeyboardLayoutTest, PressedKeysGiveTheirTextWithShiftAlone) {
    constexpr xcb_keycode_t one = 10;
    constexpr xcb_keycode_t keypadOne = 87;
    constexpr xcb_keycode_t keypadEnter = 104;
    const Pressed table[] = {
        {"us", one, false, 0, "1"},        {"us", one, true, 0, "!"},
        {"us", keypadOne, false, 0, "1"},  {"us", keypadOne, true, 0, "1"},
        {"us", keypadEnter, false, 0, ""}, {"us", 36, false, 0, ""},
        {"fr", one, false, 0, "&"},        {"fr", one, true, 0, "1"},
        {"fr", keypadOne, false, 0, "1"},  {"de", one, false, 0, "1"},
        {"ru", one, false, 0, "1"},        {"ru", 24, false, 0, "й"},
        {"us,fr", one, false, 1, "&"},     {"us,fr", one, true, 1, "1"},
        {"us,fr", one, false, 0, "1"},     {"us,fr", keypadOne, false, 1, "1"}};
    QString current;
    for (const Pressed& row : table) {
        if (current != QLatin1String(row.layouts)) {
            current = QLatin1String(row.layouts);
            setLayout(current);
        }
        SCOPED_TRACE(::testing::Message()
                     << row.layouts << " " << int(row.key) << " " << row.shift);
        // Control and Caps Lock are on as well; they mean nothing.
        const std::uint32_t state = row.layout << 13 | XCB_MOD_MASK_CONTROL | XCB_MOD_MASK_LOCK |
                                    (row.shift ? std::uint32_t{XCB_MOD_MASK_SHIFT} : 0U);
        const QKeyEvent event(QEvent::KeyPress, Qt::Key_unknown,
                              Qt::ControlModifier |
                                  (row.shift ? Qt::ShiftModifier : Qt::NoModifier),
                              row.key, 0, state, u""_s);
        EXPECT_EQ(m_layout.pressed(event).charactersIgnoringModifiers, QString::fromUtf8(row.text));
    }
}

TEST_F(X11KeyboardLayoutTest, PressedKeysHaveTheirCarbonCodes) {
    const std::pair<quint32, std::optional<int>> table[] = {
        {36, 36}, {104, 76}, {9, 53}, {10, 18}, {87, 83}, {38, 0}, {255, {}}, {0, {}}};
    for (const auto& [key, keyCode] : table) {
        const QKeyEvent event(QEvent::KeyPress, Qt::Key_unknown, Qt::NoModifier, key, 0, 0);
        EXPECT_EQ(m_layout.pressed(event).keyCode, keyCode) << key;
    }
}

TEST_F(X11KeyboardLayoutTest, PressedKeysTellTheCancelCommand) {
    constexpr quint32 escape = 9;
    constexpr quint32 capsLock = 66;
    constexpr quint32 period = 60;
    const auto isCancel = [this](quint32 key, Qt::KeyboardModifiers modifiers = {}) {
        return m_layout.pressed({QEvent::KeyPress, Qt::Key_unknown, modifiers, key, 0, 0})
            .isCancelCommand;
    };
    EXPECT_TRUE(isCancel(escape));
    EXPECT_FALSE(isCancel(capsLock));
    EXPECT_FALSE(isCancel(period));
    EXPECT_FALSE(isCancel(period, Qt::ControlModifier));
    EXPECT_TRUE(isCancel(period, Qt::MetaModifier));
    remap(u"xmodmap"_s, {u"-e"_s, u"keycode 66 = Escape"_s});
    EXPECT_TRUE(isCancel(capsLock));
}

TEST(TextOfSymbol, IsWhatIsShownForIt) {
    const std::pair<xkb_keysym_t, QString> table[] = {{XKB_KEY_a, u"a"_s},
                                                      {XKB_KEY_eacute, u"é"_s},
                                                      {XKB_KEY_EuroSign, u"€"_s},
                                                      {XKB_KEY_dead_circumflex, u"^"_s},
                                                      {XKB_KEY_dead_acute, u"\u00b4"_s},
                                                      {XKB_KEY_space, u" "_s},
                                                      {XKB_KEY_Return, QString()},
                                                      {XKB_KEY_Escape, QString()},
                                                      {XKB_KEY_F1, QString()},
                                                      {XKB_KEY_NoSymbol, QString()}};
    for (const auto& [symbol, text] : table) {
        EXPECT_EQ(x11::textOfSymbol(symbol).value_or(QString()), text) << symbol;
    }
}

} // namespace

} // namespace snapvane
