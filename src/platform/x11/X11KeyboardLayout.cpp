#include "platform/x11/X11KeyboardLayout.h"

#include "platform/UsKeyboardLayout.h"
#include "platform/x11/ServerKeys.h"

#include <QKeyEvent>

#include <xkbcommon/xkbcommon-keysyms.h>

namespace snapvane::x11 {

namespace {

struct Accent {
    xkb_keysym_t symbol;
    char32_t character;
};

constexpr Accent accents[] = {
    {XKB_KEY_dead_grave, U'`'},          {XKB_KEY_dead_acute, U'\u00b4'},
    {XKB_KEY_dead_circumflex, U'^'},     {XKB_KEY_dead_tilde, U'~'},
    {XKB_KEY_dead_macron, U'\u00af'},    {XKB_KEY_dead_breve, U'\u02d8'},
    {XKB_KEY_dead_abovedot, U'\u02d9'},  {XKB_KEY_dead_diaeresis, U'\u00a8'},
    {XKB_KEY_dead_abovering, U'\u02da'}, {XKB_KEY_dead_doubleacute, U'\u02dd'},
    {XKB_KEY_dead_caron, U'\u02c7'},     {XKB_KEY_dead_cedilla, U'\u00b8'},
    {XKB_KEY_dead_ogonek, U'\u02db'},    {XKB_KEY_dead_greek, U'\u00b5'}};

QString oneCharacter(char32_t character) {
    return QString::fromUcs4(&character, 1);
}

bool isKeypadCharacter(xkb_keysym_t symbol) {
    return symbol >= XKB_KEY_KP_Space && symbol <= XKB_KEY_KP_Equal &&
           xkb_keysym_to_utf32(symbol) != 0;
}

std::optional<int> keyOfSymbolAt(X11Keyboard& keyboard, xkb_keysym_t symbol, std::uint32_t level) {
    const X11Keyboard::CodeRange codes = keyboard.keyCodes();
    for (std::uint32_t layout = 0; layout < keyboard.layoutCount(); ++layout) {
        for (std::uint32_t keyCode = codes.first; keyCode <= codes.last; ++keyCode) {
            if (keyboard.symbol(keyCode, layout, level) == symbol) {
                const auto carbon = carbonOfServerKey(keyCode);
                if (carbon) {
                    return carbon;
                }
            }
        }
    }
    return std::nullopt;
}

} // namespace

X11KeyboardLayout::X11KeyboardLayout(X11Keyboard& keyboard) : m_keyboard(keyboard) {
    connect(&keyboard, &X11Keyboard::mappingChanged, this, &KeyboardLayout::changed);
    connect(&keyboard, &X11Keyboard::layoutChanged, this, &KeyboardLayout::changed);
}

std::optional<QString> X11KeyboardLayout::translate(std::uint16_t keyCode) const {
    const auto layout = asciiCapableLayout();
    if (!layout) {
        return usCharacter(keyCode);
    }
    const auto twins = KeyCodes::twinsOfCarbon(keyCode);
    if (!twins) {
        return std::nullopt;
    }
    const auto serverCode = static_cast<std::uint32_t>(serverKeyOfEvdev(twins->evdev));
    return textOfSymbol(m_keyboard.symbol(serverCode, *layout));
}

PressedKey X11KeyboardLayout::pressed(const QKeyEvent& event) const {
    PressedKey key;
    key.keyCode = carbonOfServerKey(event.nativeScanCode());
    const xkb_keysym_t symbol = symbolIgnoringModifiers(event);
    key.charactersIgnoringModifiers = textOfSymbol(symbol).value_or(QString());
    key.isCancelCommand =
        symbol == XKB_KEY_Escape || symbol == XKB_KEY_Cancel ||
        (symbol == XKB_KEY_period && event.modifiers().testFlag(Qt::MetaModifier));
    return key;
}

xkb_keysym_t X11KeyboardLayout::symbolIgnoringModifiers(const QKeyEvent& event) const {
    // Key events carry the layout in force in these bits of their modifiers.
    constexpr std::uint32_t layoutShift = 13;
    constexpr std::uint32_t layoutMask = 3;
    const std::uint32_t keyCode = event.nativeScanCode();
    const std::uint32_t layout = (event.nativeModifiers() >> layoutShift) & layoutMask;
    const xkb_keysym_t plain = m_keyboard.symbol(keyCode, layout, 0);
    const xkb_keysym_t shifted = m_keyboard.symbol(keyCode, layout, 1);
    if (isKeypadCharacter(plain) || isKeypadCharacter(shifted)) {
        return isKeypadCharacter(plain) ? plain : shifted;
    }
    return event.modifiers().testFlag(Qt::ShiftModifier) && shifted != XKB_KEY_NoSymbol ? shifted
                                                                                        : plain;
}

std::optional<std::uint32_t> X11KeyboardLayout::asciiCapableLayout() const {
    const std::uint32_t current = m_keyboard.currentLayout();
    if (isAsciiCapable(current)) {
        return current;
    }
    for (std::uint32_t layout = 0; layout < m_keyboard.layoutCount(); ++layout) {
        if (isAsciiCapable(layout)) {
            return layout;
        }
    }
    return std::nullopt;
}

bool X11KeyboardLayout::isAsciiCapable(std::uint32_t layout) const {
    if (layout >= m_keyboard.layoutCount()) {
        return false;
    }
    // Some Latin alphabets do without a few of the twenty-six letters; others have nearly none.
    constexpr int enough = 20;
    const X11Keyboard::CodeRange codes = m_keyboard.keyCodes();
    int letters = 0;
    for (std::uint32_t keyCode = codes.first; keyCode <= codes.last; ++keyCode) {
        const xkb_keysym_t symbol = m_keyboard.symbol(keyCode, layout);
        letters += symbol >= XKB_KEY_a && symbol <= XKB_KEY_z ? 1 : 0;
    }
    return letters >= enough;
}

std::optional<QString> textOfSymbol(xkb_keysym_t symbol) {
    for (const Accent& accent : accents) {
        if (accent.symbol == symbol) {
            return oneCharacter(accent.character);
        }
    }
    const char32_t character = xkb_keysym_to_utf32(symbol);
    if (character == 0 || !QChar::isPrint(character)) {
        return std::nullopt;
    }
    return oneCharacter(character);
}

std::optional<int> keyOfSymbol(X11Keyboard& keyboard, xkb_keysym_t symbol) {
    const auto plain = keyOfSymbolAt(keyboard, symbol, 0);
    const bool isKeypad = symbol >= XKB_KEY_KP_Space && symbol <= XKB_KEY_KP_Equal;
    return plain || !isKeypad ? plain : keyOfSymbolAt(keyboard, symbol, 1);
}

} // namespace snapvane::x11
