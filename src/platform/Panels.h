#pragma once

#include "base/Geometry.h"
#include "platform/ScreenPanel.h"

#include <QString>

#include <memory>

class QWidget;

namespace snapvane {

struct Screen;

/// What a panel does with input.
enum class PanelInput { ClickThrough, Pointer, PointerAndKeyboard };

struct PanelOptions {
    /// The window's name.
    QString name;
    /// Place in the stacking order among the program's own surfaces; above all other applications.
    int level = 0;
    PanelInput input = PanelInput::ClickThrough;
    /// Of the surface's corners, in points: the surface is cut to that shape, which is what the
    /// desktop draws shadows around and all it shows where it knows no transparency. What the
    /// widget paints is round, and smooth, by itself.
    double cornerRadius = 0;
};

/// A widget shown as a borderless surface at a global place, on every workspace, never activating
/// the program. Main thread. Destroying it takes it off the screen.
class Panel {
public:
    virtual ~Panel() = default;

    /// Shows the panel, or moves it when it is shown, with its lower-left corner at `origin`
    /// (global points) and brings it to the front of its level.
    virtual void showAt(GlobalPoint origin) = 0;
    /// Shows the panel where it was last, in front of its level.
    virtual void show() = 0;
    virtual void hide() = 0;
    virtual bool isVisible() const = 0;
    /// False once the desktop shows transparency in another way than when the panel was made; one
    /// that is made then looks right.
    virtual bool isCurrent() const = 0;
};

class Panels {
public:
    virtual ~Panels() = default;

    /// The panel owns the widget, whose size is the panel's.
    virtual std::unique_ptr<Panel> create(std::unique_ptr<QWidget> content,
                                          const PanelOptions& options) = 0;
    /// The panel owns the widget and gives it the screen's size, in points rounded up.
    virtual std::unique_ptr<ScreenPanel> cover(std::unique_ptr<QWidget> content,
                                               const Screen& screen,
                                               const ScreenPanelOptions& options) = 0;
};

} // namespace snapvane
