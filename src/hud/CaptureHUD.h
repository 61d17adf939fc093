#pragma once

#include <QString>
#include <QTimer>

#include <memory>

namespace snapvane {

class HUDContentView;
class Panel;
class Panels;
class Screens;

/// Shows short notices, one at a time, at the top of the screen that the pointer is on. A notice
/// takes no input and no focus and goes by itself; a newer one takes its place at once. Main
/// thread.
class CaptureHUD {
public:
    /// Both must outlive the object.
    CaptureHUD(Screens& screens, Panels& panels);
    ~CaptureHUD();

    /// The program's own; never released.
    static CaptureHUD& shared();

    /// `duration` in seconds from now, whatever was shown before.
    void show(const QString& message, double duration);

private:
    void preparePanel(const QString& message);
    void place();
    void hide();

    Screens& m_screens;
    Panels& m_panels;
    std::unique_ptr<Panel> m_panel;
    HUDContentView* m_view = nullptr;
    QTimer m_hideJob;
};

} // namespace snapvane
