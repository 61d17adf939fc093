#pragma once

#include <QImage>
#include <QString>

#include <functional>

namespace snapvane {

struct ScreenPanelOptions {
    /// The window's name.
    QString name;
    /// Place in the stacking order among the program's own surfaces; above all other applications.
    int level = 0;
    /// Called from the main loop, at most once, when the desktop has come to show transparency in
    /// another way than when the panel was made; one that is made then looks right.
    std::function<void()> outdated;
};

/// A widget over one whole screen, to the pixel, borderless, on every workspace, above everything
/// and with the keyboard while the user works in it. Main thread. Destroying it takes it off the
/// screen and gives the keyboard back.
class ScreenPanel {
public:
    virtual ~ScreenPanel() = default;

    /// The screen as it stood when the panel was made, in its native pixels, where the desktop
    /// knows no transparency: the widget paints it below all else. Null where the live screen
    /// shines through whatever the widget leaves free.
    virtual const QImage& backdrop() const = 0;
    /// True where `setOpacity` shows.
    virtual bool fades() const = 0;
    /// From 0, unseen, which it begins with, to 1. Without an effect where the panel does not fade.
    virtual void setOpacity(double opacity) = 0;
    /// Shows the panel in front of its level.
    virtual void orderFront() = 0;
    /// Gives the panel the keyboard. Whoever had it before gets it back with the end of the panel,
    /// if it is the panel's still.
    virtual void takeFocus() = 0;
    virtual bool hasFocus() const = 0;
};

} // namespace snapvane
