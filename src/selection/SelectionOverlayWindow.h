#pragma once

#include "platform/Overlay.h"
#include "selection/SelectionOverlayView.h"

#include <QObject>

#include <memory>
#include <vector>

namespace snapvane {

/// The one window of a selection over the union of all screens: a surface a screen, all showing the
/// same view. Owns the view and the platform's session; owned by the controller. Main thread.
class SelectionOverlayWindow : public OverlayClient {
public:
    /// Above menus and docks.
    static constexpr int level = 1000;

    struct Settings {
        ScreenList screens;
        double dimAmount = 0;
    };

    SelectionOverlayWindow(OverlayHost& host, const Settings& settings);
    ~SelectionOverlayWindow() override;

    SelectionOverlayView& contentView() { return m_view; }

    bool canBecomeKey() const { return true; }
    bool canBecomeMain() const { return true; }

    /// Makes the surfaces, unseen as yet; false when the desktop cannot show them. What is on the
    /// glass now is what will stand under the veil where the desktop knows no transparency.
    bool open();
    /// Puts the surfaces on every screen and takes the keyboard and the pointer.
    void makeKeyAndOrderFront();
    /// Conceals the surfaces and takes them off the screen.
    void orderOut();

    /// Called when the desktop refuses the keyboard or the pointer.
    std::function<void(const QString& reason)> onInputRefused;
    /// Called when the desktop composites windows in another way than when the surfaces were made.
    std::function<void()> onOutdated;

    void paintOverlay(std::size_t screenIndex, OverlayCanvas& canvas,
                      const QRegion& dirty) override;
    void overlayPointerEvent(const OverlayPointerEvent& event) override;
    void overlayKeyEvent(const OverlayKeyEvent& event) override;
    void overlayOutdated() override;
    void overlayInputRefused(const QString& reason) override;

private:
    std::vector<SelectionPicture> currentPictures() const;
    void scheduleDisplay();
    void display();

    OverlayHost& m_host;
    Settings m_settings;
    SelectionOverlayView m_view;
    // What the surfaces show, one a screen.
    std::vector<SelectionPicture> m_pictures;
    bool m_displayScheduled = false;
    QObject m_context;
    std::unique_ptr<OverlaySession> m_session;
};

} // namespace snapvane
