#include "LoupeProbe.h"

#include "PictureCompare.h"
#include "ScreenGrab.h"
#include "Wait.h"
#include "X11Probe.h"

#include <QColor>

#include <algorithm>
#include <cmath>

using namespace Qt::StringLiterals;

namespace snapvane::testing {

namespace {

// In points.
constexpr double viewWidth = 160;
constexpr double viewHeight = 164;
constexpr double circleLeft = 20;
constexpr double circleTop = 8;
constexpr double circleDiameter = 120;
constexpr double cellSide = 8;
constexpr double distanceToPointer = 18;
constexpr double margin = 8;

constexpr auto patience = std::chrono::seconds(3);

int whole(double value) {
    return static_cast<int>(std::lround(value));
}

/// One axis: after the pointer, before it where there is no room, never within the margin.
double besidePointer(double pointer, double extent, double room, double scale) {
    double place = pointer + distanceToPointer * scale;
    if (place + extent > room - margin * scale) {
        place = pointer - extent - distanceToPointer * scale;
    }
    return std::max(place, margin * scale);
}

/// A place in the circle, in points from its centre, y downwards.
struct CirclePlace {
    double x;
    double y;

    /// Column and row from the middle one.
    [[nodiscard]] QPoint cell() const {
        return {static_cast<int>(std::floor(x / cellSide + 0.5)),
                static_cast<int>(std::floor(y / cellSide + 0.5))};
    }

    /// Whether nothing is drawn over the cell's colour here: neither border nor grid, frame, cross.
    [[nodiscard]] bool isPlain() const {
        constexpr double insideBorder = 57.5;
        constexpr double gridReach = 1;
        constexpr double crossReach = 11;
        const auto distanceToGrid = [](double value) {
            const double offset = std::fmod(value + cellSide / 2 + circleDiameter, cellSide);
            return std::min(offset, cellSide - offset);
        };
        const double nearer = std::min(std::abs(x), std::abs(y));
        const double farther = std::max(std::abs(x), std::abs(y));
        const bool onCross = nearer < 1 && farther < crossReach;
        const bool onFrame = farther > 2.6 && farther < 5.4;
        return std::hypot(x, y) < insideBorder && distanceToGrid(x) >= gridReach &&
               distanceToGrid(y) >= gridReach && !onCross && !onFrame;
    }
};

/// What is wrong with a loupe's picture.
struct Verdict {
    int compared = 0;
    int wrong = 0;
    QPoint firstCell;
    QRgb expected = 0;
    QRgb actual = 0;
};

/// Compares the loupe, as it stands on the glass, with the pixels that stood on the desktop.
class CircleComparison {
public:
    /// `screen` is the one under the pointer.
    CircleComparison(const QImage& before, const QRect& screen, const QPoint& pointer,
                     bool isTranslucent)
        : m_before(before), m_screen(screen), m_pointer(pointer), m_isTranslucent(isTranslucent) {}

    /// `loupe` is its window's picture, and `place` where that is.
    [[nodiscard]] Verdict verdict(const QImage& loupe, const QPoint& place, double scale) {
        m_loupe = loupe;
        m_loupePlace = place;
        Verdict verdict;
        const QRectF circle(circleLeft * scale, circleTop * scale, circleDiameter * scale,
                            circleDiameter * scale);
        const QRect pixels = circle.toAlignedRect();
        for (int y = pixels.top(); y <= pixels.bottom(); ++y) {
            for (int x = pixels.left(); x <= pixels.right(); ++x) {
                const CirclePlace inCircle = {(x + 0.5 - circle.center().x()) / scale,
                                              (y + 0.5 - circle.center().y()) / scale};
                if (inCircle.isPlain()) {
                    judge({x, y}, inCircle.cell(), verdict);
                }
            }
        }
        return verdict;
    }

private:
    void judge(const QPoint& pixel, const QPoint& cell, Verdict& verdict) const {
        ++verdict.compared;
        const QPoint shown(m_pointer.x() + cell.x(),
                           std::clamp(m_pointer.y() + cell.y(), m_screen.top(), m_screen.bottom()));
        const bool isBeside = shown.x() < m_screen.left() || shown.x() > m_screen.right();
        const QRgb expected = isBeside ? qRgb(0, 0, 0) : m_before.pixel(shown);
        const QRgb actual = m_loupe.pixel(pixel);
        const bool right = isBeside ? isBlack(pixel) : ((expected ^ actual) & 0xffffffU) == 0;
        if (!right && verdict.wrong++ == 0) {
            verdict.firstCell = cell;
            verdict.expected = expected;
            verdict.actual = actual;
        }
    }

    /// Black of 85 % over the desktop, under the veil or, within a selection, without it; all black
    /// where there is no transparency.
    [[nodiscard]] bool isBlack(const QPoint& pixel) const {
        const QRgb actual = m_loupe.pixel(pixel);
        if (!m_isTranslucent) {
            return (actual & 0xffffffU) == 0;
        }
        constexpr double rest = 0.15;
        constexpr double underVeil = 0.82;
        constexpr double rounding = 2;
        const QRgb behind = m_before.pixel(m_loupePlace + pixel);
        const auto fits = [](int value, int desktop) {
            return value >= rest * underVeil * desktop - rounding &&
                   value <= rest * desktop + rounding;
        };
        return fits(qRed(actual), qRed(behind)) && fits(qGreen(actual), qGreen(behind)) &&
               fits(qBlue(actual), qBlue(behind));
    }

    const QImage& m_before;
    QRect m_screen;
    QPoint m_pointer;
    bool m_isTranslucent;
    QImage m_loupe;
    QPoint m_loupePlace;
};

std::string colourName(QRgb colour) {
    return QColor(colour).name().toStdString();
}

std::string text(const QRect& rect) {
    return std::to_string(rect.width()) + 'x' + std::to_string(rect.height()) + '+' +
           std::to_string(rect.x()) + '+' + std::to_string(rect.y());
}

} // namespace

int LoupeProbe::screenIndex(const QPoint& pointer) const {
    return m_desktop.screenRect(0).contains(pointer) ? 0 : 1;
}

QRect LoupeProbe::screenAt(const QPoint& pointer) const {
    return m_desktop.screenRect(screenIndex(pointer));
}

double LoupeProbe::scaleAt(const QPoint& pointer) const {
    const auto index = static_cast<std::size_t>(screenIndex(pointer));
    return index < m_scales.size() ? m_scales[index] : 1.0;
}

QRect LoupeProbe::place(const QPoint& pointer) const {
    const QRect screen = screenAt(pointer);
    const double scale = scaleAt(pointer);
    const double width = viewWidth * scale;
    const double height = viewHeight * scale;
    // Places are counted from the lower left corner, and the pointer is its pixel's one.
    const double x = besidePointer(pointer.x() - screen.left(), width, screen.width(), scale);
    const double y = besidePointer(screen.bottom() - pointer.y(), height, screen.height(), scale);
    return {screen.left() + whole(x), screen.bottom() + 1 - whole(y) - whole(height), whole(width),
            whole(height)};
}

std::optional<QRect> LoupeProbe::window() const {
    // What is hidden may be off the desktop for a while instead of gone.
    const auto found =
        X11Probe(m_desktop.connection()).viewableWindowNamed(u"Snapvane Magnifier"_s);
    const bool seen = found && found->rect.intersects(m_desktop.rect());
    return seen ? std::optional(found->rect) : std::nullopt;
}

::testing::AssertionResult LoupeProbe::shows(const QPoint& pointer, const QImage& before) const {
    const QRect expected = place(pointer);
    const X11Probe probe(m_desktop.connection());
    const bool translucent = probe.selectionOwner("_NET_WM_CM_S0") != XCB_WINDOW_NONE;
    std::optional<QRect> found;
    Verdict verdict;
    QImage picture;
    const bool right = waitUntil(
        [&] {
            found = window();
            if (found != expected) {
                return false;
            }
            picture = grabScreen(m_desktop.connection(), expected);
            verdict = CircleComparison(before, screenAt(pointer), pointer, translucent)
                          .verdict(picture, expected.topLeft(), scaleAt(pointer));
            return verdict.wrong == 0 && verdict.compared > 0;
        },
        patience, std::chrono::milliseconds(20));
    const auto where =
        " with the pointer at " + std::to_string(pointer.x()) + ',' + std::to_string(pointer.y());
    // Half of what the circle covers.
    constexpr int fewest = 5000;
    if (right && verdict.compared >= fewest) {
        return ::testing::AssertionSuccess() << "the loupe shows the pixels" << where;
    }
    if (found != expected) {
        return ::testing::AssertionFailure()
               << "the loupe is " << (found ? "at " + text(*found) : "nowhere") << " instead of "
               << text(expected) << where;
    }
    picture.save(reportsFolder() + u"/loupe.png"_s);
    return ::testing::AssertionFailure()
           << verdict.wrong << " of " << verdict.compared
           << " pixels in the loupe's cells are wrong" << where << ", first in column "
           << verdict.firstCell.x() << ", row " << verdict.firstCell.y()
           << " from the middle: " << colourName(verdict.actual) << " instead of "
           << colourName(verdict.expected);
}

::testing::AssertionResult LoupeProbe::isGone() const {
    if (waitUntil([this] { return !window().has_value(); }, patience)) {
        return ::testing::AssertionSuccess() << "there is no loupe";
    }
    return ::testing::AssertionFailure() << "the loupe is at " << text(*window());
}

} // namespace snapvane::testing
