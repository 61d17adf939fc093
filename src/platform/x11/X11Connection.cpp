#include "platform/x11/X11Connection.h"

#include "base/ProgramError.h"
#include "platform/x11/Xcb.h"

#include <QGuiApplication>

#include <map>
#include <mutex>

namespace snapvane::x11 {

namespace {

const xcb_screen_t* screenNumbered(xcb_connection_t* connection, int number) {
    xcb_screen_iterator_t screens = xcb_setup_roots_iterator(xcb_get_setup(connection));
    for (; screens.rem > 1 && number > 0; --number) {
        xcb_screen_next(&screens);
    }
    return screens.data;
}

int defaultScreenNumber() {
    char* host = nullptr;
    int display = 0;
    int screen = 0;
    xcb_parse_display(nullptr, &host, &display, &screen);
    std::free(host);
    return screen;
}

void setTextProperty(const Server& server, xcb_window_t window, xcb_atom_t property,
                     xcb_atom_t type, const QByteArray& text) {
    xcb_change_property(server.connection, XCB_PROP_MODE_REPLACE, window, property, type, 8,
                        static_cast<std::uint32_t>(text.size()), text.constData());
}

void setCardinal(const Server& server, xcb_window_t window, const char* property,
                 std::uint32_t value) {
    xcb_change_property(server.connection, XCB_PROP_MODE_REPLACE, window, atom(server, property),
                        XCB_ATOM_CARDINAL, 32, 1, &value);
}

} // namespace

Server qtServer() {
    auto* application = qGuiApp->nativeInterface<QNativeInterface::QX11Application>();
    if (application == nullptr) {
        programError("the X11 backend was chosen without an X11 application");
    }
    Server server;
    server.connection = application->connection();
    server.screenNumber = defaultScreenNumber();
    server.screen = screenNumbered(server.connection, server.screenNumber);
    return server;
}

std::unique_ptr<OwnConnection> OwnConnection::open() {
    Server server;
    server.connection = xcb_connect(nullptr, &server.screenNumber);
    if (xcb_connection_has_error(server.connection) != 0) {
        xcb_disconnect(server.connection);
        return nullptr;
    }
    server.screen = screenNumbered(server.connection, server.screenNumber);
    return std::unique_ptr<OwnConnection>(new OwnConnection(server));
}

OwnConnection::~OwnConnection() {
    xcb_disconnect(m_server.connection);
}

bool OwnConnection::isBroken() const {
    return xcb_connection_has_error(m_server.connection) != 0;
}

xcb_atom_t atom(const Server& server, const QByteArray& name) {
    // Never released: a display that goes ends the program at once, with work under way on other
    // threads.
    static auto& mutex = *new std::mutex;
    static auto& known = *new std::map<QByteArray, xcb_atom_t>;
    const std::scoped_lock lock(mutex);
    if (const auto found = known.find(name); found != known.end()) {
        return found->second;
    }
    const auto cookie = xcb_intern_atom(server.connection, 0,
                                        static_cast<std::uint16_t>(name.size()), name.constData());
    const auto reply = owned(xcb_intern_atom_reply(server.connection, cookie, nullptr));
    if (!reply) {
        return XCB_ATOM_NONE;
    }
    known.emplace(name, reply->atom);
    return reply->atom;
}

bool hasExtension(const Server& server, xcb_extension_t* extension) {
    const auto* data = xcb_get_extension_data(server.connection, extension);
    return data != nullptr && data->present != 0;
}

xcb_atom_t compositorSelection(const Server& server) {
    return atom(server, "_NET_WM_CM_S" + QByteArray::number(server.screenNumber));
}

bool hasCompositor(const Server& server) {
    const auto cookie = xcb_get_selection_owner(server.connection, compositorSelection(server));
    const auto reply = owned(xcb_get_selection_owner_reply(server.connection, cookie, nullptr));
    return reply && reply->owner != XCB_WINDOW_NONE;
}

xcb_visualid_t argbVisual(const Server& server) {
    auto depths = xcb_screen_allowed_depths_iterator(server.screen);
    for (; depths.rem > 0; xcb_depth_next(&depths)) {
        if (depths.data->depth != 32) {
            continue;
        }
        auto visuals = xcb_depth_visuals_iterator(depths.data);
        for (; visuals.rem > 0; xcb_visualtype_next(&visuals)) {
            const bool rgb = visuals.data->red_mask == 0xff0000 &&
                             visuals.data->green_mask == 0x00ff00 &&
                             visuals.data->blue_mask == 0x0000ff;
            if (visuals.data->_class == XCB_VISUAL_CLASS_TRUE_COLOR && rgb) {
                return visuals.data->visual_id;
            }
        }
    }
    return XCB_NONE;
}

void setWindowIdentity(const Server& server, xcb_window_t window, const QByteArray& name) {
    setTextProperty(server, window, XCB_ATOM_WM_NAME, XCB_ATOM_STRING, name);
    setTextProperty(server, window, atom(server, "_NET_WM_NAME"), atom(server, "UTF8_STRING"),
                    name);
    // Instance and class, each with its terminating zero.
    setTextProperty(server, window, XCB_ATOM_WM_CLASS, XCB_ATOM_STRING,
                    QByteArray("snapvane\0Snapvane\0", 18));
}

void setCompositorHints(const Server& server, xcb_window_t window) {
    constexpr std::uint32_t neverBypass = 2;
    setCardinal(server, window, "_COMPTON_SHADOW", 0);
    setCardinal(server, window, "_NET_WM_BYPASS_COMPOSITOR", neverBypass);
}

void roundTrip(const Server& server) {
    const auto cookie = xcb_get_input_focus(server.connection);
    owned(xcb_get_input_focus_reply(server.connection, cookie, nullptr));
}

} // namespace snapvane::x11
