#pragma once

#include "XcbConnection.h"

#include <QString>

#include <map>
#include <sys/types.h>

namespace snapvane::testing {

/// How many resources of each type (WINDOW, PIXMAP, PICTURE, GC, CURSOR, …) the X server keeps for
/// all connections of a process; empty when the process has none.
using ResourceCounts = std::map<QString, uint32_t>;

ResourceCounts serverResourcesOf(const XcbConnection& connection, pid_t process);

} // namespace snapvane::testing
