#pragma once

#include "XcbConnection.h"

namespace snapvane::testing {

/// Gives the root window the test pattern for a background and tells compositors of it. It lasts as
/// long as the connection.
void paintRootPattern(const XcbConnection& connection);

} // namespace snapvane::testing
