#include "ChoiceProbe.h"

#include "ScreenGrab.h"
#include "Wait.h"

#include <cmath>

namespace snapvane::testing {

namespace {

// Points.
constexpr double cardWidth = 420;
constexpr double cardPadding = 22;
/// From the card's edge to where it has nothing but its own colour, past its round corners.
constexpr double insideTheEdge = 21;
/// From a row's left edge to where it has nothing but its own colour, past its round corners and
/// before its icon.
constexpr double insideTheRow = 13;
constexpr double rowBorder = 1;
constexpr double smallestRow = 30;
/// How far the card's shadow is to be seen at most.
constexpr double shadowReach = 30;

constexpr std::size_t rowCount = 5;

int pixels(double points, double scale) {
    return static_cast<int>(std::lround(points * scale));
}

/// How far one can go from there in that direction without meeting another colour.
QPoint endOfColour(const QImage& picture, QPoint from, const QPoint& step) {
    const QRgb colour = picture.pixel(from);
    while (picture.rect().contains(from + step) && picture.pixel(from + step) == colour) {
        from += step;
    }
    return from;
}

/// The rows' upper and lower edges in a column of pixels that crosses all of them.
std::vector<std::pair<int, int>> rowsInColumn(const QImage& glass, const QRect& card, int x,
                                              double scale) {
    const QRgb surface = glass.pixel(x, card.bottom() - pixels(insideTheEdge, scale));
    std::vector<std::pair<int, int>> rows;
    for (int y = card.top(); y <= card.bottom();) {
        const int end = std::min(endOfColour(glass, {x, y}, {0, 1}).y(), card.bottom());
        if (end - y >= pixels(smallestRow, scale) && glass.pixel(x, y) != surface) {
            const int border = pixels(rowBorder, scale);
            rows.emplace_back(y - border, end + border);
        }
        y = end + 1;
    }
    return rows;
}

std::optional<QRect> findCard(const QImage& glass, double scale) {
    const QPoint centre = glass.rect().center();
    const int inside = pixels(insideTheEdge, scale);
    const QPoint start(centre.x() - pixels(cardWidth / 2, scale) + inside, centre.y());
    if (!glass.rect().contains(start)) {
        return std::nullopt;
    }
    const int top = endOfColour(glass, start, {0, -1}).y();
    const int bottom = endOfColour(glass, start, {0, 1}).y();
    const QPoint below(start.x(), top + inside);
    if (below.y() > bottom) {
        return std::nullopt;
    }
    const QRect card(QPoint(endOfColour(glass, below, {-1, 0}).x(), top),
                     QPoint(endOfColour(glass, below, {1, 0}).x(), bottom));
    return std::abs(card.width() - cardWidth * scale) <= 1 ? std::optional(card) : std::nullopt;
}

bool isDimmed(QRgb desktop, QRgb glass) {
    // 82 % in whole numbers.
    constexpr int left = 41;
    constexpr int all = 50;
    const auto near = [](int background, int value) {
        return std::abs(value * all - background * left) <= all;
    };
    return near(qRed(desktop), qRed(glass)) && near(qGreen(desktop), qGreen(glass)) &&
           near(qBlue(desktop), qBlue(glass));
}

/// On a picture of the whole screen, in its coordinates.
std::optional<ChoiceCard> cardOn(const QImage& glass, double scale) {
    const auto rect = findCard(glass, scale);
    if (!rect) {
        return std::nullopt;
    }
    const int padding = pixels(cardPadding, scale);
    auto rows =
        rowsInColumn(glass, *rect, rect->left() + padding + pixels(insideTheRow, scale), scale);
    if (rows.size() < rowCount) {
        return std::nullopt;
    }
    ChoiceCard card = {*rect, {}};
    // A wide thumbnail may look like one more.
    rows.erase(rows.begin(), rows.end() - rowCount);
    for (const auto& [top, bottom] : rows) {
        card.rows.emplace_back(QPoint(rect->left() + padding, top),
                               QPoint(rect->right() - padding, bottom));
    }
    return card;
}

} // namespace

std::vector<WindowInfo> ChoiceProbe::windows() const {
    return X11Probe(m_desktop.connection()).windowsNamed(QString::fromUtf16(windowName));
}

std::optional<WindowInfo> ChoiceProbe::window() const {
    return X11Probe(m_desktop.connection()).viewableWindowNamed(QString::fromUtf16(windowName));
}

bool ChoiceProbe::isFocused() const {
    const auto shown = window();
    return shown && X11Probe(m_desktop.connection()).focus() == shown->id;
}

WindowInfo ChoiceProbe::waitForWindow(xcb_window_t before) const {
    std::optional<WindowInfo> shown;
    require("the choice window with the keyboard", [&] {
        shown = window();
        return shown && shown->id != before &&
               X11Probe(m_desktop.connection()).focus() == shown->id;
    });
    return shown.value_or(WindowInfo());
}

bool ChoiceProbe::waitUntilGone(std::chrono::milliseconds limit) const {
    return waitUntil([this] { return !window().has_value(); }, limit);
}

ChoiceCard ChoiceProbe::waitForCard(const QRect& screen, double scale) const {
    std::optional<ChoiceCard> found;
    QImage last;
    require("the card to stand still", [&] {
        QImage glass = grabScreen(m_desktop.connection(), screen);
        found = glass == last ? cardOn(glass, scale) : std::nullopt;
        last = std::move(glass);
        return found.has_value();
    });
    ChoiceCard card = found.value_or(ChoiceCard());
    card.rect.translate(screen.topLeft());
    for (QRect& row : card.rows) {
        row.translate(screen.topLeft());
    }
    return card;
}

QRegion besideTheCard(const QRect& screen, const ChoiceCard& card, double scale) {
    const int margin = pixels(shadowReach, scale);
    return QRegion(screen) - card.rect.adjusted(-margin, -margin, margin, margin);
}

int pixelsNotDimmed(const QImage& desktop, const QImage& glass, const QRegion& where) {
    int count = 0;
    for (const QRect& rect : where) {
        for (int y = rect.top(); y <= rect.bottom(); ++y) {
            const auto* behind = reinterpret_cast<const QRgb*>(desktop.constScanLine(y));
            const auto* seen = reinterpret_cast<const QRgb*>(glass.constScanLine(y));
            for (int x = rect.left(); x <= rect.right(); ++x) {
                count += isDimmed(behind[x], seen[x]) ? 0 : 1;
            }
        }
    }
    return count;
}

} // namespace snapvane::testing
