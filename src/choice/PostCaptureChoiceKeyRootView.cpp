#include "choice/PostCaptureChoiceKeyRootView.h"

#include "base/Translation.h"
#include "choice/ChoiceCardShadow.h"
#include "choice/PostCaptureChoiceCardHostView.h"
#include "choice/PostCaptureChoiceDimView.h"
#include "platform/KeyboardLayout.h"

#include <QAccessibleWidget>
#include <QKeyEvent>

namespace snapvane {

namespace {

// Carbon key codes, of HIToolbox's Events header.
constexpr int returnKeyCode = 36;
constexpr int escapeKeyCode = 53;

/// To assistive technology the view is a dialogue that asks something, not just some area.
QAccessibleInterface* makeAccessible(const QString&, QObject* object) {
    auto* view = qobject_cast<PostCaptureChoiceKeyRootView*>(object);
    return view != nullptr ? new QAccessibleWidget(view, QAccessible::Dialog) : nullptr;
}

} // namespace

PostCaptureChoiceKeyRootView::PostCaptureChoiceKeyRootView(const KeyboardLayout& layout)
    : m_layout(layout) {
    // A second installation of the same changes nothing.
    QAccessible::installFactory(makeAccessible);
    setFocusPolicy(Qt::StrongFocus);
    setCursor(Qt::ArrowCursor);
    setAccessibleName(translated("After capture"));
}

void PostCaptureChoiceKeyRootView::install(std::unique_ptr<QWidget> cardView) {
    qDeleteAll(findChildren<QWidget*>(Qt::FindDirectChildrenOnly));
    m_dimView = new PostCaptureChoiceDimView(this);
    m_shadow = new ChoiceCardShadow(this);
    m_cardHost = new PostCaptureChoiceCardHostView(this);
    m_cardHost->setCard(*cardView.release());
    arrange();
}

void PostCaptureChoiceKeyRootView::arrange() {
    if (m_cardHost == nullptr) {
        return;
    }
    m_dimView->setGeometry(rect());
    m_cardHost->move((width() - m_cardHost->width()) / 2, (height() - m_cardHost->height()) / 2);
    m_shadow->surround(m_cardHost->geometry());
}

bool PostCaptureChoiceKeyRootView::tryHandle(const QKeyEvent& event) {
    using Action = PostCaptureMenuAction;
    const PressedKey key = m_layout.pressed(event);
    if (key.charactersIgnoringModifiers == u"1") {
        return commit(Action::copyToClipboard);
    }
    if (key.charactersIgnoringModifiers == u"2") {
        return commit(Action::uploadFerrybox);
    }
    if (key.charactersIgnoringModifiers == u"3") {
        return commit(Action::saveToFolder);
    }
    if (key.charactersIgnoringModifiers == u"4" || key.keyCode == returnKeyCode) {
        return commit(Action::runSavedDefaults);
    }
    return key.keyCode == escapeKeyCode && dismiss();
}

bool PostCaptureChoiceKeyRootView::tryCancel(const QKeyEvent& event) {
    return m_layout.pressed(event).isCancelCommand && dismiss();
}

void PostCaptureChoiceKeyRootView::keyPressEvent(QKeyEvent* event) {
    if (!tryHandle(*event) && !tryCancel(*event)) {
        QWidget::keyPressEvent(event);
    }
}

void PostCaptureChoiceKeyRootView::resizeEvent(QResizeEvent*) {
    arrange();
}

bool PostCaptureChoiceKeyRootView::commit(PostCaptureMenuAction action) {
    if (m_keyHandler) {
        m_keyHandler->commit(action);
    }
    return true;
}

bool PostCaptureChoiceKeyRootView::dismiss() {
    if (m_keyHandler) {
        m_keyHandler->dismiss();
    }
    return true;
}

} // namespace snapvane
