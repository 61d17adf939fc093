#pragma once

#include "VirtualDesktop.h"
#include "X11Probe.h"

#include <QImage>
#include <QRect>
#include <QRegion>

#include <optional>
#include <vector>

namespace snapvane::testing {

/// The rows of the card, from top to bottom.
enum class ChoiceRow { Copy, Upload, Save, SavedDefaults, Cancel };

/// Where the card stands on the glass, in native pixels of the desktop.
struct ChoiceCard {
    QRect rect;
    /// One for each ChoiceRow.
    std::vector<QRect> rows;

    [[nodiscard]] QRect row(ChoiceRow which) const { return rows[static_cast<std::size_t>(which)]; }
};

/// Looks at the window that asks what happens to a capture, from outside. Test thread only.
class ChoiceProbe {
public:
    static constexpr char16_t windowName[] = u"Snapvane Choice";

    explicit ChoiceProbe(const VirtualDesktop& desktop) : m_desktop(desktop) {}

    /// All of them, viewable or not.
    [[nodiscard]] std::vector<WindowInfo> windows() const;
    /// The one on the screen.
    [[nodiscard]] std::optional<WindowInfo> window() const;
    [[nodiscard]] bool isFocused() const;
    /// Waits for the window, other than `before`, to be up with the keyboard; throws
    /// std::runtime_error when it does not come.
    WindowInfo waitForWindow(xcb_window_t before = XCB_WINDOW_NONE) const;
    /// False when one is still there after the limit.
    bool waitUntilGone(std::chrono::milliseconds limit = std::chrono::seconds(3)) const;

    /// The card on that screen, once it is wholly painted, shines through no more and stands still;
    /// throws std::runtime_error when that does not come.
    [[nodiscard]] ChoiceCard waitForCard(const QRect& screen, double scale = 1) const;

private:
    const VirtualDesktop& m_desktop;
};

/// The area of a screen on which neither the card nor its shadow falls.
QRegion besideTheCard(const QRect& screen, const ChoiceCard& card, double scale = 1);

/// How many pixels of `where` are not the desktop's under black of 18 %, to one step a channel.
int pixelsNotDimmed(const QImage& desktop, const QImage& glass, const QRegion& where);

} // namespace snapvane::testing
