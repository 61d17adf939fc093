#include "selection/LabelFont.h"

#include <QFontDatabase>

namespace snapvane {

QFont labelFont(int points) {
    QFont font = QFontDatabase::systemFont(QFontDatabase::FixedFont);
    // One pixel of what is drawn on is a point; whoever draws scales it.
    font.setPixelSize(points);
    return font;
}

} // namespace snapvane
