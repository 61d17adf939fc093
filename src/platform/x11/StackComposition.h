#pragma once

#include "platform/x11/PictureFormats.h"
#include "platform/x11/ServerResource.h"
#include "platform/x11/WindowStack.h"

namespace snapvane::x11 {

/// Puts together what the screen would show if some of its windows were not there, from the pixels
/// that the other windows keep in the server. Owned by the grabber, for one connection; used by one
/// thread at a time.
class StackComposition {
public:
    /// Blocks for a round trip or two.
    explicit StackComposition(const Server& server);

    /// False when the server lacks what it takes.
    bool isPossible() const { return m_possible; }

    /// A pixmap of the root window's depth and of the size of the region's bounding rectangle, in
    /// which the pixels of the region (the server's space) show the root background and above it
    /// every window of the stack but the excluded ones. A window that is gone by now, or keeps no
    /// pixels, is left out; the errors that it causes come to the connection as events.
    ServerPixmap compose(const WindowStack& stack, const std::vector<std::uint32_t>& excluded,
                         const QRegion& region) const;

private:
    void draw(const StackedWindow& stacked, bool composited, const ServerPicture& target,
              const QRect& source, const QPoint& corner) const;

    Server m_server;
    PictureFormats m_formats;
    bool m_possible;
};

} // namespace snapvane::x11
