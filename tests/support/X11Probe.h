#pragma once

#include "XcbConnection.h"

#include <QPoint>
#include <QRect>
#include <QString>

#include <optional>
#include <string_view>
#include <vector>

namespace snapvane::testing {

/// One window of anybody, as it stood when it was looked at.
struct WindowInfo {
    xcb_window_t id = XCB_WINDOW_NONE;
    QString name;
    /// WM_CLASS: instance and class name.
    QString instanceName;
    QString className;
    /// Inside the border, in native pixels of the desktop.
    QRect rect;
    bool viewable = false;
    bool overrideRedirect = false;
};

/// Looks at a display from outside, as another client. Test thread only.
class X11Probe {
public:
    explicit X11Probe(const XcbConnection& connection) : m_connection(connection) {}

    /// Every window below the root, at any depth.
    [[nodiscard]] std::vector<WindowInfo> windows() const;
    [[nodiscard]] std::vector<WindowInfo> windowsNamed(const QString& name) const;
    [[nodiscard]] std::vector<WindowInfo> windowsOfClass(const QString& className) const;
    [[nodiscard]] std::optional<WindowInfo> viewableWindowNamed(const QString& name) const;

    [[nodiscard]] QPoint pointer() const;
    [[nodiscard]] xcb_window_t focus() const;
    [[nodiscard]] xcb_window_t selectionOwner(std::string_view selection) const;
    /// A 32-bit property of a window, or nothing.
    [[nodiscard]] std::optional<uint32_t> number(xcb_window_t window,
                                                 std::string_view property) const;
    [[nodiscard]] int monitorCount() const;
    /// The modifiers, locks included, that are in force: XCB_MOD_MASK bits.
    [[nodiscard]] uint16_t modifiers() const;
    /// Which of the keyboard's layouts is in force, from 0.
    [[nodiscard]] int layout() const;
    /// The codes of the keys that are down.
    [[nodiscard]] std::vector<xcb_keycode_t> pressedKeys() const;

private:
    /// As events carry it.
    [[nodiscard]] uint16_t inputState() const;
    [[nodiscard]] std::optional<WindowInfo> look(xcb_window_t window) const;
    [[nodiscard]] QByteArray text(xcb_window_t window, xcb_atom_t property) const;
    void collect(xcb_window_t parent, std::vector<WindowInfo>& found) const;

    const XcbConnection& m_connection;
};

} // namespace snapvane::testing
