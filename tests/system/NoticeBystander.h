#pragma once

#include "XcbConnection.h"

#include <QRect>

#include <vector>

namespace snapvane::testing {

/// A plain window of another program, of one colour, that records what input it gets. On the screen
/// when the constructor returns, which throws std::runtime_error when it does not come up; gone
/// with the object. Test thread only.
class NoticeBystander {
public:
    enum class Kind {
        Plain,
        /// Covers its whole screen, above panels.
        FullScreen,
        /// A panel at the upper edge that keeps its place for itself.
        Dock,
        /// None of the window manager's business.
        OverrideRedirect
    };

    static constexpr uint32_t colour = 0x2060c0;

    /// `rect` in native pixels of the desktop.
    NoticeBystander(const QString& display, Kind kind, const QRect& rect);

    [[nodiscard]] xcb_window_t window() const { return m_window; }
    /// The codes of the keys that were pressed in the window since the last call.
    std::vector<xcb_keycode_t> takeKeys();
    /// How many buttons were pressed in the window since the last call.
    int takeClicks();

private:
    void describe(Kind kind, const QRect& rect);
    void setAtom(const char* property, const char* value);
    void collect();

    XcbConnection m_connection;
    xcb_window_t m_window;
    std::vector<xcb_keycode_t> m_keys;
    int m_clicks = 0;
};

} // namespace snapvane::testing
