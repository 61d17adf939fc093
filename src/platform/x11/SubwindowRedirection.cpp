#include "platform/x11/SubwindowRedirection.h"

#include <xcb/composite.h>

namespace snapvane::x11 {

namespace {

int& holders() {
    static int count = 0;
    return count;
}

} // namespace

SubwindowRedirection::SubwindowRedirection(const Server& server) : m_server(server) {
    if (holders()++ == 0 && hasExtension(server, &xcb_composite_id)) {
        xcb_composite_redirect_subwindows(server.connection, server.root(),
                                          XCB_COMPOSITE_REDIRECT_AUTOMATIC);
    }
}

SubwindowRedirection::~SubwindowRedirection() {
    if (--holders() == 0 && hasExtension(m_server, &xcb_composite_id)) {
        xcb_composite_unredirect_subwindows(m_server.connection, m_server.root(),
                                            XCB_COMPOSITE_REDIRECT_AUTOMATIC);
        xcb_flush(m_server.connection);
    }
}

} // namespace snapvane::x11
