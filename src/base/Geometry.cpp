#include "base/Geometry.h"

#include <algorithm>
#include <cmath>

namespace snapvane {

double GlobalRect::width() const {
    return std::abs(size.width);
}

double GlobalRect::height() const {
    return std::abs(size.height);
}

double GlobalRect::minX() const {
    return std::min(origin.x, origin.x + size.width);
}

double GlobalRect::midX() const {
    return minX() + width() / 2;
}

double GlobalRect::maxX() const {
    return std::max(origin.x, origin.x + size.width);
}

double GlobalRect::minY() const {
    return std::min(origin.y, origin.y + size.height);
}

double GlobalRect::midY() const {
    return minY() + height() / 2;
}

double GlobalRect::maxY() const {
    return std::max(origin.y, origin.y + size.height);
}

bool GlobalRect::isEmpty() const {
    return !(width() > 0 && height() > 0);
}

GlobalRect GlobalRect::standardized() const {
    return {{minX(), minY()}, {width(), height()}};
}

GlobalRect GlobalRect::offsetBy(double dx, double dy) const {
    return {{origin.x + dx, origin.y + dy}, size};
}

bool GlobalRect::contains(GlobalPoint point) const {
    return point.x >= minX() && point.x < maxX() && point.y >= minY() && point.y < maxY();
}

bool GlobalRect::intersects(const GlobalRect& other) const {
    return !intersection(other).isEmpty();
}

GlobalRect GlobalRect::intersection(const GlobalRect& other) const {
    const double left = std::max(minX(), other.minX());
    const double right = std::min(maxX(), other.maxX());
    const double bottom = std::max(minY(), other.minY());
    const double top = std::min(maxY(), other.maxY());
    if (!(right > left) || !(top > bottom)) {
        return {};
    }
    return {{left, bottom}, {right - left, top - bottom}};
}

GlobalRect GlobalRect::unionWith(const GlobalRect& other) const {
    const double left = std::min(minX(), other.minX());
    const double bottom = std::min(minY(), other.minY());
    return {{left, bottom},
            {std::max(maxX(), other.maxX()) - left, std::max(maxY(), other.maxY()) - bottom}};
}

GlobalRect rectBetween(GlobalPoint a, GlobalPoint b) {
    return {{std::min(a.x, b.x), std::min(a.y, b.y)}, {std::abs(a.x - b.x), std::abs(a.y - b.y)}};
}

bool DeviceRect::contains(DevicePoint point) const {
    return point.x >= origin.x && point.x < origin.x + size.width && point.y >= origin.y &&
           point.y < origin.y + size.height;
}

} // namespace snapvane
