#pragma once

#include "actions/AfterCaptureFacilities.h"

namespace snapvane {

/// What happens after a capture, with the program's own preferences, clipboard and notices. They
/// are never released. Main thread.
AfterCaptureFacilities sharedAfterCaptureFacilities();

/// True while what the user has chosen for a capture is being done.
bool isActingOnCaptures();

/// Takes the window off the screen in which the user is asked about a capture; that capture is
/// dropped, and whatever is captured still has the saved defaults done. For the end of the program,
/// while there is still a platform. Main thread.
void stopAsking();

/// Abandons the uploads that are under way, closes the store of their key and lets no other start,
/// so that whatever else is to be done with their captures is done without waiting for a server.
/// For the end of the program, while there is still a platform. Main thread.
void endUploads();

} // namespace snapvane
