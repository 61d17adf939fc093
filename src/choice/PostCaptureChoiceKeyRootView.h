#pragma once

#include "choice/PostCaptureChoiceKeyHandling.h"

#include <QPointer>
#include <QWidget>

namespace snapvane {

class ChoiceCardShadow;
class KeyboardLayout;
class PostCaptureChoiceCardHostView;
class PostCaptureChoiceDimView;

/// Everything that the choice window shows, the card in the middle of the dimmed screen, and the
/// one that its keys go to. Owned by the panel.
class PostCaptureChoiceKeyRootView : public QWidget {
    Q_OBJECT

public:
    explicit PostCaptureChoiceKeyRootView(const KeyboardLayout& layout);

    void setKeyHandler(PostCaptureChoiceKeyHandling* handler) { m_keyHandler = handler; }
    PostCaptureChoiceDimView& dimView() { return *m_dimView; }

    /// Makes the card the one that is shown, at its own size, in place of one before.
    void install(std::unique_ptr<QWidget> cardView);

    /// Acts on the keys that choose; false for all others. What is held besides them counts for
    /// nothing. A key counts as handled even if nobody is there any more to act on it.
    bool tryHandle(const QKeyEvent& event);
    /// The cancel command, whatever key it is on.
    bool tryCancel(const QKeyEvent& event);

protected:
    void keyPressEvent(QKeyEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;

private:
    void arrange();
    bool commit(PostCaptureMenuAction action);
    bool dismiss();

    const KeyboardLayout& m_layout;
    QPointer<PostCaptureChoiceKeyHandling> m_keyHandler;
    PostCaptureChoiceDimView* m_dimView = nullptr;
    ChoiceCardShadow* m_shadow = nullptr;
    PostCaptureChoiceCardHostView* m_cardHost = nullptr;
};

} // namespace snapvane
