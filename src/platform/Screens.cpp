#include "platform/Screens.h"

#include <algorithm>

namespace snapvane {

std::optional<Screen> Screens::mainScreen() {
    const ScreenList screens = list();
    return screens.empty() ? std::nullopt : std::optional(screens.front());
}

std::optional<Screen> screenContaining(const ScreenList& screens, GlobalPoint point) {
    const auto found = std::find_if(screens.begin(), screens.end(), [point](const Screen& screen) {
        return screen.frame.contains(point);
    });
    return found == screens.end() ? std::nullopt : std::optional(*found);
}

} // namespace snapvane
