#pragma once

#include "XcbConnection.h"

#include <vector>

#include <xcb/damage.h>

namespace snapvane::testing {

/// Counts what is painted into windows, by whomever: every rectangle that the server reports, again
/// when it is painted again. A window's own painting counts, not what moves over it. Uses a
/// connection of its own. Test thread only.
class DamageWatch {
public:
    /// Throws std::runtime_error on a server that cannot tell.
    DamageWatch(const QString& display, const std::vector<xcb_window_t>& windows);
    ~DamageWatch();
    DamageWatch(const DamageWatch&) = delete;
    DamageWatch& operator=(const DamageWatch&) = delete;

    struct Painted {
        qint64 pixels = 0;
        qint64 largestRectangle = 0;
        int rectangles = 0;
    };

    /// What was painted since this was last asked, or since the watch began.
    Painted news();

private:
    XcbConnection m_connection;
    std::uint8_t m_event = 0;
};

} // namespace snapvane::testing
