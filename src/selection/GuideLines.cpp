#include "selection/GuideLines.h"

namespace snapvane {

GuideLines& GuideLines::shared() {
    static NoGuideLines lines;
    return lines;
}

} // namespace snapvane
