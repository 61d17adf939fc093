#include "capture/ScreenCoordinateConverter.h"

namespace snapvane::ScreenCoordinateConverter {

GlobalRect unionFrameOfAllScreens(const ScreenList& screens) {
    if (screens.empty()) {
        return {};
    }
    GlobalRect frame = screens.front().frame;
    for (const Screen& screen : screens) {
        frame = frame.unionWith(screen.frame);
    }
    return frame;
}

} // namespace snapvane::ScreenCoordinateConverter
