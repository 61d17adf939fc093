#include "platform/x11/ShareableWindows.h"

#include "base/AppIdentity.h"
#include "platform/x11/TopLevelWindows.h"
#include "platform/x11/Xcb.h"

#include <QByteArrayList>

#include <algorithm>
#include <span>

namespace snapvane::x11 {

namespace {

// In units of four bytes; class names are far shorter, and windows have one or two types.
constexpr std::uint32_t longestClass = 256;
constexpr std::uint32_t mostTypes = 32;

struct Inquiry {
    xcb_get_property_cookie_t className;
    xcb_get_property_cookie_t types;
};

std::optional<RunningApplication> ownerIn(const xcb_get_property_reply_t* reply) {
    if (reply == nullptr || reply->format != 8) {
        return std::nullopt;
    }
    const QByteArray texts(static_cast<const char*>(xcb_get_property_value(reply)),
                           xcb_get_property_value_length(reply));
    // Instance and class, each with its terminating zero.
    const QByteArray className = texts.split('\0').value(1);
    if (className.isEmpty()) {
        return std::nullopt;
    }
    return RunningApplication{className == productName ? QLatin1String(applicationIdentifier)
                                                       : QString::fromLatin1(className)};
}

bool isDesktop(const xcb_get_property_reply_t* reply, xcb_atom_t desktopType) {
    if (reply == nullptr || reply->format != 32) {
        return false;
    }
    const std::span types(static_cast<const xcb_atom_t*>(xcb_get_property_value(reply)),
                          static_cast<std::size_t>(xcb_get_property_value_length(reply)) /
                              sizeof(xcb_atom_t));
    return std::find(types.begin(), types.end(), desktopType) != types.end();
}

std::vector<Inquiry> inquire(const Server& server, const std::vector<xcb_window_t>& clients) {
    const xcb_atom_t type = atom(server, "_NET_WM_WINDOW_TYPE");
    std::vector<Inquiry> inquiries;
    inquiries.reserve(clients.size());
    for (const xcb_window_t client : clients) {
        inquiries.push_back(
            {xcb_get_property(server.connection, 0, client, XCB_ATOM_WM_CLASS,
                              XCB_GET_PROPERTY_TYPE_ANY, 0, longestClass),
             xcb_get_property(server.connection, 0, client, type, XCB_ATOM_ATOM, 0, mostTypes)});
    }
    return inquiries;
}

} // namespace

std::vector<ShareableWindow> shareableWindows(const Server& server, const ContentQuery& query) {
    std::vector<TopLevelWindow> topLevels = topLevelWindows(server);
    if (query.onScreenWindowsOnly) {
        std::erase_if(topLevels, [](const TopLevelWindow& window) { return !window.viewable; });
    }
    const xcb_atom_t desktopType = atom(server, "_NET_WM_WINDOW_TYPE_DESKTOP");
    const auto inquiries = inquire(server, clientWindows(server, topLevels));
    std::vector<ShareableWindow> windows;
    for (std::size_t i = 0; i < topLevels.size(); ++i) {
        const auto className =
            owned(xcb_get_property_reply(server.connection, inquiries[i].className, nullptr));
        const auto types =
            owned(xcb_get_property_reply(server.connection, inquiries[i].types, nullptr));
        if (!query.excludeDesktopWindows || !isDesktop(types.get(), desktopType)) {
            windows.push_back({topLevels[i].id, ownerIn(className.get())});
        }
    }
    return windows;
}

} // namespace snapvane::x11
