#include "X11Probe.h"

#include <QByteArrayList>

#include <algorithm>
#include <xcb/randr.h>

namespace snapvane::testing {

namespace {

template <typename Condition>
std::vector<WindowInfo> select(std::vector<WindowInfo> all, Condition condition) {
    std::erase_if(all, [&](const WindowInfo& window) { return !condition(window); });
    return all;
}

} // namespace

std::vector<WindowInfo> X11Probe::windows() const {
    std::vector<WindowInfo> found;
    collect(m_connection.root(), found);
    return found;
}

std::vector<WindowInfo> X11Probe::windowsNamed(const QString& name) const {
    return select(windows(), [&](const WindowInfo& window) { return window.name == name; });
}

std::vector<WindowInfo> X11Probe::windowsOfClass(const QString& className) const {
    return select(windows(),
                  [&](const WindowInfo& window) { return window.className == className; });
}

std::optional<WindowInfo> X11Probe::viewableWindowNamed(const QString& name) const {
    const auto found = select(windowsNamed(name), [](const WindowInfo& w) { return w.viewable; });
    return found.empty() ? std::nullopt : std::optional(found.front());
}

QPoint X11Probe::pointer() const {
    const auto cookie = xcb_query_pointer(m_connection, m_connection.root());
    const Reply<xcb_query_pointer_reply_t> reply(
        xcb_query_pointer_reply(m_connection, cookie, nullptr));
    return reply ? QPoint(reply->root_x, reply->root_y) : QPoint(-1, -1);
}

xcb_window_t X11Probe::focus() const {
    const Reply<xcb_get_input_focus_reply_t> reply(
        xcb_get_input_focus_reply(m_connection, xcb_get_input_focus(m_connection), nullptr));
    return reply ? reply->focus : xcb_window_t(XCB_WINDOW_NONE);
}

xcb_window_t X11Probe::selectionOwner(std::string_view selection) const {
    const auto cookie = xcb_get_selection_owner(m_connection, m_connection.atom(selection));
    const Reply<xcb_get_selection_owner_reply_t> reply(
        xcb_get_selection_owner_reply(m_connection, cookie, nullptr));
    return reply ? reply->owner : xcb_window_t(XCB_WINDOW_NONE);
}

std::optional<uint32_t> X11Probe::number(xcb_window_t window, std::string_view property) const {
    const auto cookie = xcb_get_property(m_connection, 0, window, m_connection.atom(property),
                                         XCB_GET_PROPERTY_TYPE_ANY, 0, 1);
    const Reply<xcb_get_property_reply_t> reply(
        xcb_get_property_reply(m_connection, cookie, nullptr));
    if (!reply || reply->format != 32 || xcb_get_property_value_length(reply.get()) < 4) {
        return std::nullopt;
    }
    return *static_cast<const uint32_t*>(xcb_get_property_value(reply.get()));
}

int X11Probe::monitorCount() const {
    const auto cookie = xcb_randr_get_monitors(m_connection, m_connection.root(), 1);
    const Reply<xcb_randr_get_monitors_reply_t> reply(
        xcb_randr_get_monitors_reply(m_connection, cookie, nullptr));
    return reply ? static_cast<int>(reply->nMonitors) : 0;
}

QByteArray X11Probe::text(xcb_window_t window, xcb_atom_t property) const {
    const auto cookie =
        xcb_get_property(m_connection, 0, window, property, XCB_GET_PROPERTY_TYPE_ANY, 0, 256);
    const Reply<xcb_get_property_reply_t> reply(
        xcb_get_property_reply(m_connection, cookie, nullptr));
    if (!reply || reply->format != 8) {
        return {};
    }
    return {static_cast<const char*>(xcb_get_property_value(reply.get())),
            xcb_get_property_value_length(reply.get())};
}

uint16_t X11Probe::inputState() const {
    const auto cookie = xcb_query_pointer(m_connection, m_connection.root());
    const Reply<xcb_query_pointer_reply_t> reply(
        xcb_query_pointer_reply(m_connection, cookie, nullptr));
    return reply ? reply->mask : uint16_t(0);
}

uint16_t X11Probe::modifiers() const {
    constexpr unsigned all = 0xff;
    return static_cast<uint16_t>(inputState() & all);
}

int X11Probe::layout() const {
    // Source: the keyboard extension's protocol, "Computing Effective Modifier and Group".
    constexpr int firstBit = 13;
    constexpr int mask = 3;
    return (inputState() >> firstBit) & mask;
}

std::vector<xcb_keycode_t> X11Probe::pressedKeys() const {
    const Reply<xcb_query_keymap_reply_t> reply(
        xcb_query_keymap_reply(m_connection, xcb_query_keymap(m_connection), nullptr));
    std::vector<xcb_keycode_t> pressed;
    constexpr unsigned count = 256;
    for (unsigned code = 0; reply && code < count; ++code) {
        if ((reply->keys[code / 8] & (1U << (code % 8))) != 0) {
            pressed.push_back(static_cast<xcb_keycode_t>(code));
        }
    }
    return pressed;
}

std::optional<WindowInfo> X11Probe::look(xcb_window_t window) const {
    const auto attributesCookie = xcb_get_window_attributes(m_connection, window);
    const auto geometryCookie = xcb_get_geometry(m_connection, window);
    const auto placeCookie =
        xcb_translate_coordinates(m_connection, window, m_connection.root(), 0, 0);
    const Reply<xcb_get_window_attributes_reply_t> attributes(
        xcb_get_window_attributes_reply(m_connection, attributesCookie, nullptr));
    const Reply<xcb_get_geometry_reply_t> geometry(
        xcb_get_geometry_reply(m_connection, geometryCookie, nullptr));
    const Reply<xcb_translate_coordinates_reply_t> place(
        xcb_translate_coordinates_reply(m_connection, placeCookie, nullptr));
    // Windows of others may go away while they are looked at.
    if (!attributes || !geometry || !place) {
        return std::nullopt;
    }
    WindowInfo info;
    info.id = window;
    info.viewable = attributes->map_state == XCB_MAP_STATE_VIEWABLE;
    info.overrideRedirect = attributes->override_redirect != 0;
    info.rect = QRect(place->dst_x, place->dst_y, geometry->width, geometry->height);
    info.name = QString::fromUtf8(text(window, m_connection.atom("_NET_WM_NAME")));
    if (info.name.isEmpty()) {
        info.name = QString::fromLatin1(text(window, XCB_ATOM_WM_NAME));
    }
    const QByteArrayList classTexts = text(window, XCB_ATOM_WM_CLASS).split('\0');
    info.instanceName = QString::fromLatin1(classTexts.value(0));
    info.className = QString::fromLatin1(classTexts.value(1));
    return info;
}

void X11Probe::collect(xcb_window_t parent, std::vector<WindowInfo>& found) const {
    const Reply<xcb_query_tree_reply_t> tree(
        xcb_query_tree_reply(m_connection, xcb_query_tree(m_connection, parent), nullptr));
    if (!tree) {
        return;
    }
    const xcb_window_t* children = xcb_query_tree_children(tree.get());
    for (int index = 0; index < xcb_query_tree_children_length(tree.get()); ++index) {
        if (auto info = look(children[index])) {
            found.push_back(std::move(*info));
        }
        collect(children[index], found);
    }
}

} // namespace snapvane::testing
