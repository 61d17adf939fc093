#pragma once

#include "actions/AfterCaptureFacilities.h"

namespace snapvane {

/// What happens after a capture, with the program's own preferences, clipboard and notices. They
/// are never released. Main thread.
AfterCaptureFacilities sharedAfterCaptureFacilities();

} // namespace snapvane
