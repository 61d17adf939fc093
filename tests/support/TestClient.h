#pragma once

#include "ChildProcess.h"
#include "VirtualDesktop.h"

#include <QImage>
#include <QRect>
#include <QString>

namespace snapvane::testing {

/// A window of another program on a virtual desktop, shown and painted when the constructor
/// returns; gone with the object.
class TestClient {
public:
    struct Options {
        /// "pattern", "noise", "live" or "slow".
        QString mode = QStringLiteral("pattern");
        /// Inside any frame, in native pixels of the desktop.
        QRect rect;
        QString title = QStringLiteral("Snapvane Test Client");
        uint32_t seed = 1;
        bool overrideRedirect = false;
    };

    TestClient(const VirtualDesktop& desktop, const Options& options);

    [[nodiscard]] xcb_window_t window() const { return m_window; }
    /// Where the inside of the window really is.
    [[nodiscard]] QRect rect() const;
    /// Of a live client: the number of the frame last painted.
    [[nodiscard]] uint32_t frame() const;

private:
    const XcbConnection& m_connection;
    ChildProcess m_process;
    xcb_window_t m_window = XCB_WINDOW_NONE;
};

} // namespace snapvane::testing
