#include "KeyboardShortcuts/SpecialKey.h"

#include "KeyboardShortcuts/Localization.h"
#include "KeyboardShortcuts/Text.h"

#include <array>

namespace KeyboardShortcuts {

namespace {

struct Row {
    SpecialKey specialKey = SpecialKey::return_;
    Key key = Key::return_;
    /// Empty where it is looked up in the module's texts.
    QStringView description;
    /// Empty for none.
    QStringView menuText;
    QStringView declarativeName;
    Qt::Key qt = Qt::Key_unknown;
};

// Signs: the ones that keyboards and menus show. The characters from U+F700 on are those that the
// text system assigns to function keys (its published function-key constants); the other
// declarative names are the keys' control characters.
constexpr std::array rows = {
    Row{SpecialKey::return_, Key::return_, u"\u21a9", u"\u21a9", u"\r", Qt::Key_Return},
    Row{SpecialKey::delete_, Key::delete_, u"\u232b", u"\u232b", u"\b", Qt::Key_Backspace},
    Row{SpecialKey::deleteForward, Key::deleteForward, u"\u2326", u"\u2326", u"\uf728",
        Qt::Key_Delete},
    Row{SpecialKey::end, Key::end, u"\u2198", u"\u2198", u"\uf72b", Qt::Key_End},
    Row{SpecialKey::escape, Key::escape, u"\u238b", u"\u238b", u"\u001b", Qt::Key_Escape},
    // The key that stands in this place here is Insert.
    Row{SpecialKey::help, Key::help, u"?\u20dd", u"?\u20dd", u"\uf746", Qt::Key_Insert},
    Row{SpecialKey::home, Key::home, u"\u2196", u"\u2196", u"\uf729", Qt::Key_Home},
    Row{SpecialKey::space, Key::space, u"", u" ", u" ", Qt::Key_Space},
    Row{SpecialKey::tab, Key::tab, u"\u21e5", u"\u21e5", u"\t", Qt::Key_Tab},
    Row{SpecialKey::pageUp, Key::pageUp, u"\u21de", u"\u21de", u"\uf72c", Qt::Key_PageUp},
    Row{SpecialKey::pageDown, Key::pageDown, u"\u21df", u"\u21df", u"\uf72d", Qt::Key_PageDown},
    Row{SpecialKey::upArrow, Key::upArrow, u"\u2191", u"\u2191", u"\uf700", Qt::Key_Up},
    Row{SpecialKey::rightArrow, Key::rightArrow, u"\u2192", u"\u2192", u"\uf703", Qt::Key_Right},
    Row{SpecialKey::downArrow, Key::downArrow, u"\u2193", u"\u2193", u"\uf701", Qt::Key_Down},
    Row{SpecialKey::leftArrow, Key::leftArrow, u"\u2190", u"\u2190", u"\uf702", Qt::Key_Left},
    Row{SpecialKey::f1, Key::f1, u"F1", u"\uf704", u"\uf704", Qt::Key_F1},
    Row{SpecialKey::f2, Key::f2, u"F2", u"\uf705", u"\uf705", Qt::Key_F2},
    Row{SpecialKey::f3, Key::f3, u"F3", u"\uf706", u"\uf706", Qt::Key_F3},
    Row{SpecialKey::f4, Key::f4, u"F4", u"\uf707", u"\uf707", Qt::Key_F4},
    Row{SpecialKey::f5, Key::f5, u"F5", u"\uf708", u"\uf708", Qt::Key_F5},
    Row{SpecialKey::f6, Key::f6, u"F6", u"\uf709", u"\uf709", Qt::Key_F6},
    Row{SpecialKey::f7, Key::f7, u"F7", u"\uf70a", u"\uf70a", Qt::Key_F7},
    Row{SpecialKey::f8, Key::f8, u"F8", u"\uf70b", u"\uf70b", Qt::Key_F8},
    Row{SpecialKey::f9, Key::f9, u"F9", u"\uf70c", u"\uf70c", Qt::Key_F9},
    Row{SpecialKey::f10, Key::f10, u"F10", u"\uf70d", u"\uf70d", Qt::Key_F10},
    Row{SpecialKey::f11, Key::f11, u"F11", u"\uf70e", u"\uf70e", Qt::Key_F11},
    Row{SpecialKey::f12, Key::f12, u"F12", u"\uf70f", u"\uf70f", Qt::Key_F12},
    Row{SpecialKey::f13, Key::f13, u"F13", u"\uf710", u"\uf710", Qt::Key_F13},
    Row{SpecialKey::f14, Key::f14, u"F14", u"\uf711", u"\uf711", Qt::Key_F14},
    Row{SpecialKey::f15, Key::f15, u"F15", u"\uf712", u"\uf712", Qt::Key_F15},
    Row{SpecialKey::f16, Key::f16, u"F16", u"\uf713", u"\uf713", Qt::Key_F16},
    Row{SpecialKey::f17, Key::f17, u"F17", u"\uf714", u"\uf714", Qt::Key_F17},
    Row{SpecialKey::f18, Key::f18, u"F18", u"\uf715", u"\uf715", Qt::Key_F18},
    Row{SpecialKey::f19, Key::f19, u"F19", u"\uf716", u"\uf716", Qt::Key_F19},
    Row{SpecialKey::f20, Key::f20, u"F20", u"\uf717", u"\uf717", Qt::Key_F20},
    Row{SpecialKey::keypad0, Key::keypad0, u"0\u20e3", u"", u""},
    Row{SpecialKey::keypad1, Key::keypad1, u"1\u20e3", u"", u""},
    Row{SpecialKey::keypad2, Key::keypad2, u"2\u20e3", u"", u""},
    Row{SpecialKey::keypad3, Key::keypad3, u"3\u20e3", u"", u""},
    Row{SpecialKey::keypad4, Key::keypad4, u"4\u20e3", u"", u""},
    Row{SpecialKey::keypad5, Key::keypad5, u"5\u20e3", u"", u""},
    Row{SpecialKey::keypad6, Key::keypad6, u"6\u20e3", u"", u""},
    Row{SpecialKey::keypad7, Key::keypad7, u"7\u20e3", u"", u""},
    Row{SpecialKey::keypad8, Key::keypad8, u"8\u20e3", u"", u""},
    Row{SpecialKey::keypad9, Key::keypad9, u"9\u20e3", u"", u""},
    Row{SpecialKey::keypadClear, Key::keypadClear, u"\u2612\u20e3", u"", u""},
    Row{SpecialKey::keypadDecimal, Key::keypadDecimal, u".\u20e3", u"", u""},
    Row{SpecialKey::keypadDivide, Key::keypadDivide, u"/\u20e3", u"", u""},
    Row{SpecialKey::keypadEnter, Key::keypadEnter, u"\u21a9\u20e3", u"", u""},
    Row{SpecialKey::keypadEquals, Key::keypadEquals, u"=\u20e3", u"", u""},
    Row{SpecialKey::keypadMinus, Key::keypadMinus, u"-\u20e3", u"", u""},
    Row{SpecialKey::keypadMultiply, Key::keypadMultiply, u"*\u20e3", u"", u""},
    Row{SpecialKey::keypadPlus, Key::keypadPlus, u"+\u20e3", u"", u""}};

constexpr bool rowsAreInOrder() {
    for (std::size_t index = 0; index < rows.size(); ++index) {
        if (rows[index].specialKey != static_cast<SpecialKey>(index)) {
            return false;
        }
    }
    return true;
}

static_assert(rows.size() == 53 && rowsAreInOrder());

const Row& rowOf(SpecialKey key) {
    return rows.at(static_cast<std::size_t>(key));
}

std::optional<QString> textUnlessEmpty(QStringView text) {
    return text.isEmpty() ? std::nullopt : std::optional(text.toString());
}

std::unordered_map<std::int64_t, SpecialKey> buildMapping() {
    std::unordered_map<std::int64_t, SpecialKey> mapping;
    mapping.reserve(rows.size());
    for (const Row& row : rows) {
        mapping.emplace(row.key.rawValue(), row.specialKey);
    }
    return mapping;
}

} // namespace

const std::unordered_map<std::int64_t, SpecialKey>& keyToSpecialKeyMapping() {
    static const auto mapping = buildMapping();
    return mapping;
}

Key keyOf(SpecialKey key) {
    return rowOf(key).key;
}

QString presentableDescription(SpecialKey key) {
    const QStringView description = rowOf(key).description;
    return description.isEmpty() ? capitalized(localized(QStringLiteral("space_key")))
                                 : description.toString();
}

std::optional<QString> appKitMenuItemKeyEquivalent(SpecialKey key) {
    return textUnlessEmpty(rowOf(key).menuText);
}

std::optional<QString> swiftUIKeyEquivalent(SpecialKey key) {
    return textUnlessEmpty(rowOf(key).declarativeName);
}

std::optional<Qt::Key> qtKey(SpecialKey key) {
    const Qt::Key name = rowOf(key).qt;
    return name == Qt::Key_unknown ? std::nullopt : std::optional(name);
}

} // namespace KeyboardShortcuts
