#pragma once

#include <QRect>
#include <QString>

#include <cstdlib>
#include <memory>
#include <string_view>
#include <xcb/xcb.h>

namespace snapvane::testing {

struct FreeDeleter {
    void operator()(void* memory) const { std::free(memory); }
};

/// What the X server answers; freed on its own.
template <typename T> using Reply = std::unique_ptr<T, FreeDeleter>;

/// A test's own connection to a virtual display; nothing of Qt's is involved, so a test program may
/// have several, to several displays. Throws std::runtime_error when the display cannot be reached.
class XcbConnection {
public:
    explicit XcbConnection(const QString& display);
    ~XcbConnection();
    XcbConnection(const XcbConnection&) = delete;
    XcbConnection& operator=(const XcbConnection&) = delete;

    // NOLINTNEXTLINE(google-explicit-constructor): xcb functions take it as it is
    operator xcb_connection_t*() const { return m_connection; }
    [[nodiscard]] const xcb_screen_t& screen() const { return *m_screen; }
    [[nodiscard]] xcb_window_t root() const { return m_screen->root; }
    [[nodiscard]] QRect rootRect() const;
    [[nodiscard]] xcb_atom_t atom(std::string_view name) const;
    /// Returns when the server has done everything asked so far.
    void sync() const;

private:
    xcb_connection_t* m_connection;
    xcb_screen_t* m_screen = nullptr;
};

} // namespace snapvane::testing
