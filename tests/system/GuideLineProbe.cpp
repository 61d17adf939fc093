#include "GuideLineProbe.h"

#include "QtPrinting.h"
#include "ScreenGrab.h"
#include "Wait.h"
#include "X11Probe.h"

#include <algorithm>

using namespace Qt::StringLiterals;

namespace snapvane::testing {

namespace {

const QString lineName = u"Snapvane Crosshair"_s;

constexpr auto patience = std::chrono::seconds(3);

} // namespace

std::vector<QRect> GuideLineProbe::places(const QPoint& pointer) const {
    const QRect screen = m_loupe.screenAt(pointer);
    // One point thick, in whole pixels, centred on the lower left corner of the pointer's pixel; of
    // an uneven number one more lies to the right and above.
    const bool isThick = m_loupe.scaleAt(pointer) > 1;
    const int thickness = isThick ? 2 : 1;
    const QRect upright(pointer.x() - (isThick ? 1 : 0), screen.top(), thickness, screen.height());
    const QRect level(screen.left(), pointer.y(), screen.width(), thickness);
    return {upright & screen, level & screen};
}

std::vector<QRect> GuideLineProbe::windows() const {
    std::vector<QRect> found;
    for (const WindowInfo& window : X11Probe(m_desktop.connection()).windowsNamed(lineName)) {
        // What is hidden may be off the desktop for a while instead of gone.
        if (window.viewable && window.rect.intersects(m_desktop.rect())) {
            found.push_back(window.rect);
        }
    }
    std::ranges::sort(found, {}, &QRect::width);
    return found;
}

int GuideLineProbe::windowCount() const {
    return static_cast<int>(X11Probe(m_desktop.connection()).windowsNamed(lineName).size());
}

bool GuideLineProbe::areRed(const std::vector<QRect>& lines) const {
    const QRegion loupe(m_loupe.window().value_or(QRect()));
    const QRect end(lines.front().topLeft(), QSize(1, 1));
    const QRgb colour = grabScreen(m_desktop.connection(), end).pixel(0, 0);
    if (qRed(colour) < 200 || qGreen(colour) > 110 || qBlue(colour) > 110) {
        return false;
    }
    QRegion all;
    for (const QRect& line : lines) {
        all += line;
    }
    return std::ranges::all_of(all - loupe, [&](const QRect& part) {
        const QImage picture = grabScreen(m_desktop.connection(), part);
        QImage red(picture.size(), picture.format());
        red.fill(colour);
        return picture == red;
    });
}

::testing::AssertionResult GuideLineProbe::show(const QPoint& pointer) const {
    const std::vector<QRect> expected = places(pointer);
    std::vector<QRect> found;
    bool red = false;
    waitUntil(
        [&] {
            found = windows();
            red = found == expected && areRed(expected);
            return red;
        },
        patience, std::chrono::milliseconds(20));
    if (red) {
        return ::testing::AssertionSuccess() << "the lines cross at the pointer";
    }
    return ::testing::AssertionFailure() << "lines at " << ::testing::PrintToString(found)
                                         << " instead of " << ::testing::PrintToString(expected)
                                         << (found == expected ? ", and they are not all red" : "");
}

::testing::AssertionResult GuideLineProbe::areGone() const {
    if (waitUntil([this] { return windows().empty(); }, patience)) {
        return ::testing::AssertionSuccess() << "there are no lines";
    }
    return ::testing::AssertionFailure()
           << "there are lines at " << ::testing::PrintToString(windows());
}

} // namespace snapvane::testing
