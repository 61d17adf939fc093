#pragma once

#include <xcb/xproto.h>

/// The server's codes of keys on an evdev keyboard, by their places on a US one.
namespace snapvane::testing::serverKey {

inline constexpr xcb_keycode_t o = 32;
inline constexpr xcb_keycode_t p = 33;
inline constexpr xcb_keycode_t control = 37;
inline constexpr xcb_keycode_t a = 38;
inline constexpr xcb_keycode_t shift = 50;
inline constexpr xcb_keycode_t alt = 64;
inline constexpr xcb_keycode_t capsLock = 66;
inline constexpr xcb_keycode_t f5 = 71;
inline constexpr xcb_keycode_t numLock = 77;
inline constexpr xcb_keycode_t scrollLock = 78;
inline constexpr xcb_keycode_t printScreen = 107;
inline constexpr xcb_keycode_t pause = 127;
inline constexpr xcb_keycode_t super = 133;
inline constexpr xcb_keycode_t f15 = 193;

} // namespace snapvane::testing::serverKey
