#pragma once

#include "platform/ScreenPanel.h"
#include "platform/Screens.h"

#include <QObject>

#include <functional>
#include <memory>

class QKeyEvent;

namespace snapvane {

class Panels;
class PostCaptureChoiceKeyRootView;

/// The window over the capture's screen. Its keys go to the key root view before anything else in
/// it, and a click anywhere in it gives it the keyboard. Owned by the controller, by way of the
/// fades as well; main thread.
class PostCaptureChoicePanel : public QObject {
    Q_OBJECT

public:
    /// As an open selection.
    static constexpr int level = 1000;

    PostCaptureChoicePanel(Panels& panels, const Screen& screen,
                           std::unique_ptr<PostCaptureChoiceKeyRootView> rootView,
                           std::function<void()> outdated);
    ~PostCaptureChoicePanel() override;

    const Screen& screen() const { return m_screen; }
    bool fades() const;
    void setOpacity(double opacity);
    void orderFront();
    /// Gives the panel the keyboard and the root view the keys.
    void takeFocus();
    bool hasFocus() const;

    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    bool sendEvent(const QKeyEvent& event);

    Screen m_screen;
    PostCaptureChoiceKeyRootView* m_rootView;
    std::unique_ptr<ScreenPanel> m_panel;
};

} // namespace snapvane
