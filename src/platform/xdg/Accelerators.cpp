#include "platform/xdg/Accelerators.h"

#include <QStringView>
#include <QtCore/qnamespace.h>

#include <algorithm>
#include <array>
#include <xkbcommon/xkbcommon-keysyms.h>
#include <xkbcommon/xkbcommon.h>

namespace snapvane::xdg {

namespace {

struct NamedModifier {
    QLatin1String name;
    std::uint32_t bit = 0;
};

// On the usual keyboard maps Mod1 is Alt and Mod4 is Super. What the other numbered modifiers are
// differs from keyboard to keyboard, and no stored shortcut knows such keys.
constexpr std::array namedModifiers = {
    NamedModifier{QLatin1String("Primary"), CarbonModifier::control},
    NamedModifier{QLatin1String("Control"), CarbonModifier::control},
    NamedModifier{QLatin1String("Ctrl"), CarbonModifier::control},
    NamedModifier{QLatin1String("Ctl"), CarbonModifier::control},
    NamedModifier{QLatin1String("Shift"), CarbonModifier::shift},
    NamedModifier{QLatin1String("Shft"), CarbonModifier::shift},
    NamedModifier{QLatin1String("Alt"), CarbonModifier::option},
    NamedModifier{QLatin1String("Mod1"), CarbonModifier::option},
    NamedModifier{QLatin1String("Super"), CarbonModifier::command},
    NamedModifier{QLatin1String("Mod4"), CarbonModifier::command},
    NamedModifier{QLatin1String("Meta"), CarbonModifier::command},
};

/// GNOME's name for a place instead of a symbol: the key above Tab, whatever it types.
constexpr QLatin1String aboveTab("Above_Tab");
constexpr int aboveTabKeyCode = 50;

struct QtModifier {
    std::uint32_t qt;
    std::uint32_t carbon;
};

constexpr std::array qtModifiers = {
    QtModifier{Qt::ControlModifier, CarbonModifier::control},
    QtModifier{Qt::ShiftModifier, CarbonModifier::shift},
    QtModifier{Qt::AltModifier, CarbonModifier::option},
    QtModifier{Qt::MetaModifier, CarbonModifier::command},
    QtModifier{Qt::KeypadModifier, 0}, // says which key, and is none itself
};

struct QtKey {
    int key;
    std::uint32_t symbol;
};

/// Keys that type no character of Latin-1.
constexpr std::array namedQtKeys = {
    QtKey{Qt::Key_Left, XKB_KEY_Left},
    QtKey{Qt::Key_Up, XKB_KEY_Up},
    QtKey{Qt::Key_Right, XKB_KEY_Right},
    QtKey{Qt::Key_Down, XKB_KEY_Down},
    QtKey{Qt::Key_Home, XKB_KEY_Home},
    QtKey{Qt::Key_End, XKB_KEY_End},
    QtKey{Qt::Key_PageUp, XKB_KEY_Page_Up},
    QtKey{Qt::Key_PageDown, XKB_KEY_Page_Down},
    QtKey{Qt::Key_Insert, XKB_KEY_Insert},
    QtKey{Qt::Key_Delete, XKB_KEY_Delete},
    QtKey{Qt::Key_Backspace, XKB_KEY_BackSpace},
    QtKey{Qt::Key_Tab, XKB_KEY_Tab},
    QtKey{Qt::Key_Backtab, XKB_KEY_Tab},
    QtKey{Qt::Key_Return, XKB_KEY_Return},
    QtKey{Qt::Key_Enter, XKB_KEY_KP_Enter},
    QtKey{Qt::Key_Escape, XKB_KEY_Escape},
    QtKey{Qt::Key_Print, XKB_KEY_Print},
    QtKey{Qt::Key_Pause, XKB_KEY_Pause},
    QtKey{Qt::Key_ScrollLock, XKB_KEY_Scroll_Lock},
    QtKey{Qt::Key_Menu, XKB_KEY_Menu},
    QtKey{Qt::Key_Help, XKB_KEY_Help},
    QtKey{Qt::Key_VolumeMute, XKB_KEY_XF86AudioMute},
    QtKey{Qt::Key_VolumeDown, XKB_KEY_XF86AudioLowerVolume},
    QtKey{Qt::Key_VolumeUp, XKB_KEY_XF86AudioRaiseVolume},
};

/// Keys of the keypad but for its digits.
constexpr std::array keypadQtKeys = {
    QtKey{Qt::Key_Plus, XKB_KEY_KP_Add},          QtKey{Qt::Key_Minus, XKB_KEY_KP_Subtract},
    QtKey{Qt::Key_Asterisk, XKB_KEY_KP_Multiply}, QtKey{Qt::Key_Slash, XKB_KEY_KP_Divide},
    QtKey{Qt::Key_Period, XKB_KEY_KP_Decimal},    QtKey{Qt::Key_Comma, XKB_KEY_KP_Separator},
    QtKey{Qt::Key_Equal, XKB_KEY_KP_Equal},       QtKey{Qt::Key_Enter, XKB_KEY_KP_Enter},
    QtKey{Qt::Key_Return, XKB_KEY_KP_Enter},
};

bool isWithin(int value, int first, int last) {
    return first <= value && value <= last;
}

/// What the key types without Shift.
std::uint32_t unshifted(std::uint32_t symbol) {
    return symbol == XKB_KEY_ISO_Left_Tab ? XKB_KEY_Tab : xkb_keysym_to_lower(symbol);
}

std::optional<std::uint32_t> modifierNamed(QStringView name) {
    const auto* const found =
        std::find_if(namedModifiers.begin(), namedModifiers.end(), [name](const auto& modifier) {
            return name.compare(modifier.name, Qt::CaseInsensitive) == 0;
        });
    return found == namedModifiers.end() ? std::nullopt : std::optional(found->bit);
}

/// XKB_KEY_NoSymbol for what is no name of a symbol.
std::uint32_t symbolNamed(QStringView name) {
    if (name.startsWith(QLatin1String("0x"), Qt::CaseInsensitive)) {
        return XKB_KEY_NoSymbol; // a number of the driver's: the same key has another elsewhere
    }
    const QByteArray text = name.toUtf8();
    const std::uint32_t symbol = xkb_keysym_from_name(text.constData(), XKB_KEYSYM_NO_FLAGS);
    return symbol != XKB_KEY_NoSymbol
               ? symbol
               : xkb_keysym_from_name(text.constData(), XKB_KEYSYM_CASE_INSENSITIVE);
}

std::optional<int> keyNamed(QStringView name, const KeyOfSymbol& keyOfSymbol) {
    if (name.compare(aboveTab, Qt::CaseInsensitive) == 0) {
        return aboveTabKeyCode;
    }
    const std::uint32_t symbol = symbolNamed(name);
    return symbol == XKB_KEY_NoSymbol ? std::nullopt : keyOfSymbol(unshifted(symbol));
}

/// XKB_KEY_NoSymbol for keys that no stored shortcut can name.
template <std::size_t count> std::uint32_t find(const std::array<QtKey, count>& table, int key) {
    const auto* const found = std::ranges::find(table, key, &QtKey::key);
    return found == table.end() ? XKB_KEY_NoSymbol : found->symbol;
}

std::uint32_t keypadSymbol(int key) {
    if (isWithin(key, Qt::Key_0, Qt::Key_9)) {
        return XKB_KEY_KP_0 + static_cast<std::uint32_t>(key - Qt::Key_0);
    }
    return find(keypadQtKeys, key);
}

std::uint32_t symbolOfQtKey(int key) {
    if (isWithin(key, Qt::Key_F1, Qt::Key_F20)) {
        return XKB_KEY_F1 + static_cast<std::uint32_t>(key - Qt::Key_F1);
    }
    // There both Qt and X count keys by the characters of Latin-1.
    if (isWithin(key, Qt::Key_Space, Qt::Key_AsciiTilde) ||
        isWithin(key, Qt::Key_nobreakspace, Qt::Key_ydiaeresis)) {
        return static_cast<std::uint32_t>(key);
    }
    return find(namedQtKeys, key);
}

/// Nothing when a modifier is among them that no stored shortcut can have.
std::optional<std::uint32_t> carbonModifiers(std::uint32_t qt) {
    std::uint32_t carbon = 0;
    for (const QtModifier& modifier : qtModifiers) {
        if ((qt & modifier.qt) != 0) {
            carbon |= modifier.carbon;
            qt &= ~modifier.qt;
        }
    }
    return qt == 0 ? std::optional(carbon) : std::nullopt;
}

std::optional<SymbolicHotKey> hotKey(std::optional<int> keyCode, std::uint32_t modifiers) {
    return keyCode ? std::optional(SymbolicHotKey{true, *keyCode, modifiers}) : std::nullopt;
}

} // namespace

std::optional<SymbolicHotKey> parseAccelerator(const QString& accelerator,
                                               const KeyOfSymbol& keyOfSymbol) {
    std::uint32_t modifiers = 0;
    QStringView rest = accelerator;
    while (rest.startsWith(u'<')) {
        const qsizetype end = rest.indexOf(u'>');
        const auto modifier = end < 0 ? std::nullopt : modifierNamed(rest.mid(1, end - 1));
        if (!modifier) {
            return std::nullopt;
        }
        modifiers |= *modifier;
        rest = rest.mid(end + 1);
    }
    return hotKey(keyNamed(rest, keyOfSymbol), modifiers);
}

std::optional<SymbolicHotKey> fromQtKey(int combination, const KeyOfSymbol& keyOfSymbol) {
    const auto bits = static_cast<std::uint32_t>(combination);
    constexpr auto modifierBits = static_cast<std::uint32_t>(Qt::KeyboardModifierMask);
    const auto key = static_cast<int>(bits & ~modifierBits);
    const std::uint32_t symbol =
        (bits & Qt::KeypadModifier) != 0 ? keypadSymbol(key) : symbolOfQtKey(key);
    const auto modifiers = carbonModifiers(bits & modifierBits);
    if (symbol == XKB_KEY_NoSymbol || !modifiers) {
        return std::nullopt;
    }
    return hotKey(keyOfSymbol(unshifted(symbol)), *modifiers);
}

} // namespace snapvane::xdg
