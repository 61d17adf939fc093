#pragma once

#include <QByteArray>

#include <memory>

#include <xcb/xcb.h>

namespace snapvane::x11 {

/// A connection to the X server and the screen of it that is ours. Qt's own connection is used for
/// windows and input, on the main thread; a connection of one's own serves work on other threads.
struct Server {
    xcb_connection_t* connection = nullptr;
    const xcb_screen_t* screen = nullptr;
    int screenNumber = 0;

    xcb_window_t root() const { return screen->root; }
};

/// Qt's connection. Needs the application object; main thread.
Server qtServer();

/// A connection of one's own, closed with the object.
class OwnConnection {
public:
    /// Null when the server cannot be reached.
    static std::unique_ptr<OwnConnection> open();
    ~OwnConnection();
    OwnConnection(const OwnConnection&) = delete;
    OwnConnection& operator=(const OwnConnection&) = delete;

    const Server& server() const { return m_server; }
    bool isBroken() const;

private:
    explicit OwnConnection(Server server) : m_server(server) {}

    Server m_server;
};

/// The atom of that name; interned once, the same on every connection. Any thread.
xcb_atom_t atom(const Server& server, const QByteArray& name);

/// True when the server has the extension.
bool hasExtension(const Server& server, xcb_extension_t* extension);

/// The selection that the screen's compositing manager owns.
xcb_atom_t compositorSelection(const Server& server);

/// True when a compositing manager runs on the screen.
bool hasCompositor(const Server& server);

/// A visual with an alpha channel of 8 bits a colour; XCB_NONE when the screen has none.
xcb_visualid_t argbVisual(const Server& server);

/// Sets both names of a window and its class to the program's.
void setWindowIdentity(const Server& server, xcb_window_t window, const QByteArray& name);

/// Asks compositors for no shadow, which would fall on what is beside the window, and to go on
/// compositing.
void setCompositorHints(const Server& server, xcb_window_t window);

/// Waits until the server has worked off everything sent so far.
void roundTrip(const Server& server);

} // namespace snapvane::x11
