#pragma once

#include "platform/KeyboardLayout.h"
#include "platform/x11/X11Keyboard.h"

namespace snapvane::x11 {

/// The characters that the keys give in the layout in force; where that has no Latin letters, in
/// the user's first layout that has, and where there is none such, on a US keyboard. Owned by the
/// platform; main thread.
class X11KeyboardLayout : public KeyboardLayout {
    Q_OBJECT

public:
    explicit X11KeyboardLayout(X11Keyboard& keyboard);

    std::optional<QString> translate(std::uint16_t keyCode) const override;
    PressedKey pressed(const QKeyEvent& event) const override;

private:
    std::optional<std::uint32_t> asciiCapableLayout() const;
    xkb_keysym_t symbolIgnoringModifiers(const QKeyEvent& event) const;
    bool isAsciiCapable(std::uint32_t layout) const;

    X11Keyboard& m_keyboard;
};

/// The text that a key symbol stands for when it is shown; nothing for symbols of keys that type
/// nothing. An accent that waits for its letter is shown by itself.
std::optional<QString> textOfSymbol(xkb_keysym_t symbol);

/// The Carbon code of the key that gives a symbol without modifiers, or on the keypad with Num
/// Lock, in any of the user's layouts, the first one before the others.
std::optional<int> keyOfSymbol(X11Keyboard& keyboard, xkb_keysym_t symbol);

} // namespace snapvane::x11
