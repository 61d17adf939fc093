#pragma once

#include "XcbConnection.h"

#include <QImage>
#include <QRect>

namespace snapvane::testing {

/// What stands on the glass in `rect` (native pixels of the whole desktop), as RGB32; never
/// contains the pointer. Null when the server refuses.
QImage grabScreen(const XcbConnection& connection, const QRect& rect);

/// The same once nothing has changed for `calm`; throws std::runtime_error when the screen goes on
/// changing.
QImage grabSettledScreen(const XcbConnection& connection, const QRect& rect, int calmMs = 150);

} // namespace snapvane::testing
