#include "platform/x11/TopLevelWindows.h"

#include "platform/x11/Xcb.h"

#include <span>

namespace snapvane::x11 {

namespace {

// Window managers put a window into a frame, some of them into two or three.
constexpr int deepestClient = 4;

struct Inquiry {
    xcb_window_t window;
    xcb_get_window_attributes_cookie_t attributes;
    xcb_get_geometry_cookie_t geometry;
};

/// A window that may be the client in that top-level window.
struct Candidate {
    std::size_t topLevel;
    xcb_window_t window;
};

struct CandidateInquiry {
    xcb_get_property_cookie_t state;
    xcb_query_tree_cookie_t children;
};

std::vector<xcb_window_t> childrenIn(const xcb_query_tree_reply_t* tree) {
    if (tree == nullptr) {
        return {};
    }
    const std::span children(xcb_query_tree_children(tree),
                             static_cast<std::size_t>(xcb_query_tree_children_length(tree)));
    return {children.begin(), children.end()};
}

void readInto(std::vector<TopLevelWindow>& windows, const Server& server, const Inquiry& inquiry) {
    const auto attributes =
        owned(xcb_get_window_attributes_reply(server.connection, inquiry.attributes, nullptr));
    const auto geometry =
        owned(xcb_get_geometry_reply(server.connection, inquiry.geometry, nullptr));
    if (!attributes || !geometry || attributes->_class != XCB_WINDOW_CLASS_INPUT_OUTPUT) {
        return;
    }
    TopLevelWindow window;
    window.id = inquiry.window;
    window.border = geometry->border_width;
    window.area = {{geometry->x, geometry->y},
                   {geometry->width + 2 * window.border, geometry->height + 2 * window.border}};
    window.depth = geometry->depth;
    window.visual = attributes->visual;
    window.viewable = attributes->map_state == XCB_MAP_STATE_VIEWABLE;
    windows.push_back(window);
}

std::vector<CandidateInquiry> inquire(const Server& server,
                                      const std::vector<Candidate>& candidates) {
    const xcb_atom_t state = atom(server, "WM_STATE");
    std::vector<CandidateInquiry> inquiries;
    inquiries.reserve(candidates.size());
    for (const Candidate& candidate : candidates) {
        inquiries.push_back({xcb_get_property(server.connection, 0, candidate.window, state,
                                              XCB_GET_PROPERTY_TYPE_ANY, 0, 0),
                             xcb_query_tree(server.connection, candidate.window)});
    }
    return inquiries;
}

/// Looks at one level of the windows' trees; gives the next one of those without a client so far.
std::vector<Candidate> descend(const Server& server, const std::vector<Candidate>& level,
                               std::vector<xcb_window_t>& clients, std::vector<bool>& found) {
    std::vector<Candidate> next;
    const auto inquiries = inquire(server, level);
    for (std::size_t i = 0; i < level.size(); ++i) {
        const auto [topLevel, window] = level[i];
        const auto state =
            owned(xcb_get_property_reply(server.connection, inquiries[i].state, nullptr));
        const auto tree =
            owned(xcb_query_tree_reply(server.connection, inquiries[i].children, nullptr));
        if (!found[topLevel] && state && state->type != XCB_ATOM_NONE) {
            clients[topLevel] = window;
            found[topLevel] = true;
        }
        for (const xcb_window_t child : childrenIn(tree.get())) {
            next.push_back({topLevel, child});
        }
    }
    std::erase_if(next, [&found](const Candidate& candidate) { return found[candidate.topLevel]; });
    return next;
}

} // namespace

std::vector<TopLevelWindow> topLevelWindows(const Server& server) {
    const auto cookie = xcb_query_tree(server.connection, server.root());
    const auto tree = owned(xcb_query_tree_reply(server.connection, cookie, nullptr));
    std::vector<Inquiry> inquiries;
    for (const xcb_window_t child : childrenIn(tree.get())) {
        inquiries.push_back({child, xcb_get_window_attributes(server.connection, child),
                             xcb_get_geometry(server.connection, child)});
    }
    std::vector<TopLevelWindow> windows;
    for (const Inquiry& inquiry : inquiries) {
        readInto(windows, server, inquiry);
    }
    return windows;
}

std::vector<xcb_window_t> clientWindows(const Server& server,
                                        const std::vector<TopLevelWindow>& topLevels) {
    std::vector<xcb_window_t> clients;
    std::vector<Candidate> level;
    for (std::size_t i = 0; i < topLevels.size(); ++i) {
        clients.push_back(topLevels[i].id);
        level.push_back({i, topLevels[i].id});
    }
    std::vector<bool> found(topLevels.size(), false);
    for (int depth = 0; depth <= deepestClient && !level.empty(); ++depth) {
        level = descend(server, level, clients, found);
    }
    return clients;
}

} // namespace snapvane::x11
