#pragma once

#include "platform/x11/X11Connection.h"

#include "platform/Capturer.h"

namespace snapvane::x11 {

/// The windows that the query asks for, from the bottom of the stack to its top, under the ids that
/// they have among the root window's children: a window in a frame is its frame. The program is the
/// window's class, of ours the application's identifier. Any thread, blocks for a few round trips.
std::vector<ShareableWindow> shareableWindows(const Server& server, const ContentQuery& query);

} // namespace snapvane::x11
