#pragma once

#include "platform/x11/X11Connection.h"

namespace snapvane::x11 {

/// While at least one of these lives, every window on the screen keeps its pixels in the server,
/// also where another one covers it: what is beneath can be read, and is back on the screen the
/// moment it is uncovered, without its program painting anything. Without an effect on a server
/// that cannot do that. Held by whoever is about to cover other programs' windows, before it does.
/// Qt's connection, main thread.
class SubwindowRedirection {
public:
    explicit SubwindowRedirection(const Server& server);
    ~SubwindowRedirection();
    SubwindowRedirection(const SubwindowRedirection&) = delete;
    SubwindowRedirection& operator=(const SubwindowRedirection&) = delete;

private:
    Server m_server;
};

} // namespace snapvane::x11
