#include "choice/PostCaptureChoicePanel.h"

#include "choice/PostCaptureChoiceDimView.h"
#include "choice/PostCaptureChoiceKeyRootView.h"
#include "platform/Panels.h"

#include <QAccessible>
#include <QKeyEvent>
#include <QWindow>

namespace snapvane {

PostCaptureChoicePanel::PostCaptureChoicePanel(
    Panels& panels, const Screen& screen, std::unique_ptr<PostCaptureChoiceKeyRootView> rootView,
    std::function<void()> outdated)
    : m_screen(screen), m_rootView(rootView.get()) {
    m_panel = panels.cover(std::move(rootView), screen,
                           {QStringLiteral("Snapvane Choice"), level, std::move(outdated)});
    m_rootView->dimView().setBackdrop(m_panel->backdrop());
}

PostCaptureChoicePanel::~PostCaptureChoicePanel() = default;

bool PostCaptureChoicePanel::fades() const {
    return m_panel->fades();
}

void PostCaptureChoicePanel::setOpacity(double opacity) {
    m_panel->setOpacity(opacity);
}

void PostCaptureChoicePanel::orderFront() {
    m_panel->orderFront();
    if (QWindow* window = m_rootView->windowHandle()) {
        // What happens in the window comes through here before it goes to the widgets.
        window->installEventFilter(this);
    }
    QAccessibleEvent announcement(m_rootView, QAccessible::Alert);
    QAccessible::updateAccessibility(&announcement);
}

void PostCaptureChoicePanel::takeFocus() {
    m_panel->takeFocus();
    m_rootView->setFocus(Qt::ActiveWindowFocusReason);
}

bool PostCaptureChoicePanel::hasFocus() const {
    return m_panel->hasFocus();
}

bool PostCaptureChoicePanel::eventFilter(QObject*, QEvent* event) {
    switch (event->type()) {
    case QEvent::KeyPress:
        return sendEvent(*static_cast<QKeyEvent*>(event));
    case QEvent::MouseButtonPress:
        m_panel->takeFocus();
        return false;
    default:
        return false;
    }
}

bool PostCaptureChoicePanel::sendEvent(const QKeyEvent& event) {
    return m_rootView->tryHandle(event) || m_rootView->tryCancel(event);
}

} // namespace snapvane
