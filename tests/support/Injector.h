#pragma once

#include "XcbConnection.h"

#include <QPoint>

#include <vector>

namespace snapvane::testing {

/// Plays the user's hands on a display. Every call returns when the server has taken the input;
/// what clients make of it comes later. Coordinates are native pixels of the desktop.
class Injector {
public:
    explicit Injector(const XcbConnection& connection) : m_connection(connection) {}

    void moveTo(const QPoint& point);
    void press(int button = 1);
    void release(int button = 1);
    void click(const QPoint& point, int button = 1);
    /// Presses at `from`, moves in `steps` steps and stays there with the button held.
    void dragTo(const QPoint& from, const QPoint& to, int steps = 8);
    /// The same and lets go.
    void drag(const QPoint& from, const QPoint& to, int steps = 8);

    /// Presses and releases the key that carries the X key symbol in the first group.
    void tapKey(xcb_keysym_t symbol);
    void pressKeyCode(xcb_keycode_t code);
    void releaseKeyCode(xcb_keycode_t code);
    /// Holds all of them down, in this order, and lets go of them in the opposite one.
    void pressKeyCodes(const std::vector<xcb_keycode_t>& codes);
    void releaseKeyCodes(const std::vector<xcb_keycode_t>& codes);
    /// Throws std::runtime_error when no key carries the symbol.
    [[nodiscard]] xcb_keycode_t keyCodeFor(xcb_keysym_t symbol) const;

private:
    void send(uint8_t type, uint8_t detail, const QPoint& point = {});

    const XcbConnection& m_connection;
};

} // namespace snapvane::testing
