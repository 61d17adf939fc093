#include "base/Contrast.h"

#include <algorithm>
#include <cmath>

namespace snapvane {

namespace {

// Constants of the guidelines' definition of relative luminance.
double linear(double channel) {
    return channel <= 0.04045 ? channel / 12.92 : std::pow((channel + 0.055) / 1.055, 2.4);
}

double luminance(const QColor& color) {
    return 0.2126 * linear(color.redF()) + 0.7152 * linear(color.greenF()) +
           0.0722 * linear(color.blueF());
}

} // namespace

QColor blended(const QColor& color, const QColor& background) {
    const float part = color.alphaF();
    const auto mixed = [part](float front, float back) { return part * front + (1 - part) * back; };
    return QColor::fromRgbF(mixed(color.redF(), background.redF()),
                            mixed(color.greenF(), background.greenF()),
                            mixed(color.blueF(), background.blueF()));
}

double contrast(const QColor& color, const QColor& background) {
    constexpr double flare = 0.05;
    const auto [darker, lighter] =
        std::minmax({luminance(blended(color, background)), luminance(background)});
    return (lighter + flare) / (darker + flare);
}

} // namespace snapvane
