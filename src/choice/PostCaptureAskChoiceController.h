#pragma once

#include "capture/CaptureResult.h"
#include "choice/PostCaptureChoiceKeyHandling.h"
#include "platform/Screens.h"

#include <QPointer>

#include <functional>
#include <memory>
#include <optional>

class QVariantAnimation;

namespace snapvane {

class CapturePreferences;
class KeyboardLayout;
class MotionPreference;
class Panels;
class PostCaptureChoicePanel;

/// Asks the user what happens to a capture: covers the screen that it was taken on, shows the card,
/// and hands on what is chosen. One capture waits at a time; while it does, the capture shortcut is
/// off. Main thread.
class PostCaptureAskChoiceController : public PostCaptureChoiceKeyHandling {
    Q_OBJECT

public:
    /// What the controller works with; everything must outlive it.
    struct Collaborators {
        Screens& screens;
        Panels& panels;
        const KeyboardLayout& keyboardLayout;
        const MotionPreference& motionPreference;
        const CapturePreferences& preferences;
        /// Of the shortcut that starts a capture.
        std::function<void()> disableShortcut;
        std::function<void()> enableShortcut;
        /// Starts what the user has chosen and returns at once.
        std::function<void(PostCaptureMenuAction, CaptureResult)> run;
    };

    explicit PostCaptureAskChoiceController(Collaborators collaborators);
    ~PostCaptureAskChoiceController() override;

    /// Asks about this capture. One that was asked about before is dropped. Nothing is shown when
    /// there is no screen.
    void present(CaptureResult result);
    /// Takes the panel off the screen at once; its capture is dropped. For the end of the program.
    void close();

    void commit(PostCaptureMenuAction action) override;
    void dismiss() override;

    bool isShown() const { return m_panel != nullptr; }

private:
    /// The first screen that holds the middle of the rectangle, else the first that it touches,
    /// else the main one.
    std::optional<Screen> screenFor(const GlobalRect& rect);
    /// For the capture that waits; unseen.
    void makePanel(const Screen& screen, const PlatformImage& thumbnail);
    /// The same question after the screens, or how they show transparency, have changed.
    void showAnew();
    void screensChanged();
    void dropPanel();
    void takeFocus();
    void fadeIn();
    void fadeOut(const std::function<void()>& whenOut);
    bool moves() const;

    Collaborators m_with;
    std::shared_ptr<PostCaptureChoicePanel> m_panel;
    std::optional<CaptureResult> m_pendingResult;
    // Where the question belongs; it goes elsewhere while that screen is away.
    Screen m_home;
    bool m_isDismissing = false;
    // The panel would be another one if there were a screen to put it on.
    bool m_isOutdated = false;
    QPointer<QVariantAnimation> m_fadingIn;
};

} // namespace snapvane
