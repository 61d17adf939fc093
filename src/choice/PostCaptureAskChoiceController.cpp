#include "choice/PostCaptureAskChoiceController.h"

#include "actions/CapturePreferences.h"
#include "choice/PostCaptureChoiceKeyRootView.h"
#include "choice/PostCaptureChoicePanel.h"
#include "choice/PostCaptureChoiceView.h"
#include "platform/MotionPreference.h"

#include <QCoreApplication>
#include <QTimer>
#include <QVariantAnimation>

#include <algorithm>
#include <chrono>
#include <utility>

namespace snapvane {

namespace {

using namespace std::chrono_literals;

struct FadeStyle {
    std::chrono::milliseconds duration;
    QEasingCurve::Type curve;
};

constexpr FadeStyle fadeInStyle = {180ms, QEasingCurve::OutSine};
constexpr FadeStyle fadeOutStyle = {150ms, QEasingCurve::InSine};
// Points that a card stays away from the upper and lower border of its screen at least.
constexpr int cardMargin = 8;

/// Changes a panel's opacity in the course of a while. It lives on by itself, also when the panel
/// is gone before its end.
QVariantAnimation* fade(const std::shared_ptr<PostCaptureChoicePanel>& panel, double from,
                        double to, const FadeStyle& style) {
    auto* fading = new QVariantAnimation(QCoreApplication::instance());
    fading->setStartValue(from);
    fading->setEndValue(to);
    fading->setDuration(static_cast<int>(style.duration.count()));
    fading->setEasingCurve(style.curve);
    QObject::connect(fading, &QVariantAnimation::valueChanged, fading,
                     [weak = std::weak_ptr(panel)](const QVariant& opacity) {
                         if (const auto shown = weak.lock()) {
                             shown->setOpacity(opacity.toDouble());
                         }
                     });
    return fading;
}

/// Which screen it is, is told by its pixels: global points move with the primary screen.
bool isSame(const Screen& one, const Screen& other) {
    return one.nativeFrame == other.nativeFrame && one.backingScale == other.backingScale;
}

std::optional<Screen> find(const ScreenList& screens, const Screen& wanted) {
    const auto found =
        std::find_if(screens.begin(), screens.end(),
                     [&wanted](const Screen& screen) { return isSame(screen, wanted); });
    return found != screens.end() ? std::optional(*found) : std::nullopt;
}

} // namespace

PostCaptureAskChoiceController::PostCaptureAskChoiceController(Collaborators collaborators)
    : m_with(std::move(collaborators)) {
    connect(&m_with.screens, &Screens::changed, this, [this] { screensChanged(); });
}

PostCaptureAskChoiceController::~PostCaptureAskChoiceController() = default;

void PostCaptureAskChoiceController::present(CaptureResult result) {
    const bool wasShown = isShown();
    dropPanel();
    m_pendingResult = std::move(result);
    const auto screen = screenFor(m_pendingResult->globalCaptureRect);
    if (!screen) {
        if (wasShown) {
            m_with.enableShortcut();
        }
        return;
    }
    m_home = *screen;
    makePanel(*screen, m_pendingResult->image);
    m_isDismissing = false;
    m_with.disableShortcut();
    m_panel->orderFront();
    fadeIn();
    takeFocus();
}

void PostCaptureAskChoiceController::close() {
    dropPanel();
    m_pendingResult.reset();
}

void PostCaptureAskChoiceController::commit(PostCaptureMenuAction action) {
    auto result = std::exchange(m_pendingResult, std::nullopt);
    dismiss();
    if (result) {
        m_with.run(action, std::move(*result));
    }
}

void PostCaptureAskChoiceController::dismiss() {
    if (m_isDismissing) {
        return;
    }
    m_isDismissing = true;
    m_pendingResult.reset();
    fadeOut([self = QPointer(this), enableShortcut = m_with.enableShortcut] {
        if (self) {
            // Whichever it is by now.
            self->dropPanel();
            self->m_isDismissing = false;
        }
        enableShortcut();
    });
}

std::optional<Screen> PostCaptureAskChoiceController::screenFor(const GlobalRect& rect) {
    const ScreenList screens = m_with.screens.list();
    if (auto holding = screenContaining(screens, {rect.midX(), rect.midY()})) {
        return holding;
    }
    const auto touched =
        std::find_if(screens.begin(), screens.end(),
                     [&rect](const Screen& screen) { return screen.frame.intersects(rect); });
    return touched != screens.end() ? std::optional(*touched) : m_with.screens.mainScreen();
}

void PostCaptureAskChoiceController::makePanel(const Screen& screen,
                                               const PlatformImage& thumbnail) {
    auto rootView = std::make_unique<PostCaptureChoiceKeyRootView>(m_with.keyboardLayout);
    rootView->setKeyHandler(this);
    const QPointer self(this);
    auto card = std::make_unique<PostCaptureChoiceView>(
        PostCaptureChoiceView::Contents{thumbnail, m_with.preferences.savedDefaultsMenuTitle(),
                                        [self](PostCaptureMenuAction action) {
                                            if (self) {
                                                self->commit(action);
                                            }
                                        },
                                        [self] {
                                            if (self) {
                                                self->dismiss();
                                            }
                                        }});
    card->limitHeight(static_cast<int>(screen.frame.size.height) - 2 * cardMargin);
    rootView->install(std::move(card));
    m_panel = std::make_shared<PostCaptureChoicePanel>(m_with.panels, screen, std::move(rootView),
                                                       [self] {
                                                           if (self) {
                                                               self->showAnew();
                                                           }
                                                       });
}

void PostCaptureAskChoiceController::screensChanged() {
    if (!m_panel) {
        return;
    }
    const ScreenList screens = m_with.screens.list();
    const bool isAway = !isSame(m_panel->screen(), m_home) && find(screens, m_home);
    if (isAway || !find(screens, m_panel->screen()) || m_isOutdated) {
        showAnew();
    }
}

void PostCaptureAskChoiceController::showAnew() {
    if (!m_panel || !m_pendingResult) {
        return;
    }
    auto screen = find(m_with.screens.list(), m_home);
    if (!screen) {
        screen = screenFor(m_pendingResult->globalCaptureRect);
    }
    m_isOutdated = !screen;
    if (!screen) {
        return; // There will be one again.
    }
    // Whoever has taken the keyboard from the panel keeps it.
    const bool hadFocus = m_panel->hasFocus();
    dropPanel();
    makePanel(*screen, m_pendingResult->image);
    m_panel->orderFront();
    m_panel->setOpacity(1);
    if (hadFocus) {
        takeFocus();
    }
}

void PostCaptureAskChoiceController::dropPanel() {
    if (m_fadingIn) {
        m_fadingIn->stop();
    }
    m_panel.reset();
    m_isOutdated = false;
}

void PostCaptureAskChoiceController::takeFocus() {
    m_panel->takeFocus();
    // Whoever else moves the focus now, because a window has just gone or come, has done so by the
    // next turn; the keys have to arrive here.
    QTimer::singleShot(0, this, [weak = std::weak_ptr(m_panel)] {
        if (const auto panel = weak.lock()) {
            panel->takeFocus();
        }
    });
}

void PostCaptureAskChoiceController::fadeIn() {
    if (!moves()) {
        m_panel->setOpacity(1);
        return;
    }
    m_fadingIn = fade(m_panel, 0, 1, fadeInStyle);
    m_fadingIn->start(QAbstractAnimation::DeleteWhenStopped);
}

void PostCaptureAskChoiceController::fadeOut(const std::function<void()>& whenOut) {
    double from = 1;
    if (m_fadingIn) {
        from = m_fadingIn->currentValue().toDouble();
        m_fadingIn->stop();
    }
    if (!moves()) {
        // Not within the call: it may come from a view of the panel.
        QTimer::singleShot(0, QCoreApplication::instance(), whenOut);
        return;
    }
    auto* fading = fade(m_panel, from, 0, fadeOutStyle);
    connect(fading, &QVariantAnimation::finished, fading, whenOut);
    fading->start(QAbstractAnimation::DeleteWhenStopped);
}

bool PostCaptureAskChoiceController::moves() const {
    return m_panel && m_panel->fades() && !m_with.motionPreference.isReduced();
}

} // namespace snapvane
