#include "upload/FerryboxBaseURL.h"

namespace snapvane {

const char ferryboxBaseURLText[] = SNAPVANE_FERRYBOX_URL;

} // namespace snapvane
