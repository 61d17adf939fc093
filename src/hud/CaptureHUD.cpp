#include "hud/CaptureHUD.h"

#include "hud/HUDContentView.h"
#include "platform/Panels.h"
#include "platform/Platform.h"
#include "platform/Screens.h"

namespace snapvane {

namespace {

// Above windows and docks, below what a selection shows.
constexpr int panelLevel = 25;
// Points below the upper edge of what docks leave free.
constexpr double topMargin = 16;

} // namespace

CaptureHUD::CaptureHUD(Screens& screens, Panels& panels) : m_screens(screens), m_panels(panels) {
    m_hideJob.setSingleShot(true);
    m_hideJob.setTimerType(Qt::PreciseTimer);
    QObject::connect(&m_hideJob, &QTimer::timeout, &m_hideJob, [this] { hide(); });
}

CaptureHUD::~CaptureHUD() = default;

CaptureHUD& CaptureHUD::shared() {
    static auto* hud = new CaptureHUD(Platform::shared().screens(), Platform::shared().panels());
    return *hud;
}

void CaptureHUD::show(const QString& message, double duration) {
    m_hideJob.stop();
    preparePanel(message);
    place();
    m_hideJob.start(std::chrono::duration_cast<std::chrono::milliseconds>(
        std::chrono::duration<double>(duration)));
}

void CaptureHUD::preparePanel(const QString& message) {
    if (m_panel && m_panel->isCurrent()) {
        m_view->setMessage(message);
        return;
    }
    auto view = std::make_unique<HUDContentView>(message);
    m_view = view.get();
    m_panel = m_panels.create(std::move(view), {.name = QStringLiteral("Snapvane Notice"),
                                                .level = panelLevel,
                                                .input = PanelInput::ClickThrough,
                                                .cornerRadius = HUDContentView::cornerRadius});
}

void CaptureHUD::place() {
    const ScreenList screens = m_screens.list();
    auto screen = screenContaining(screens, m_screens.pointerLocation());
    if (!screen) {
        screen = m_screens.mainScreen();
    }
    if (!screen) {
        m_panel->show();
        return;
    }
    const GlobalRect& visible = screen->visibleFrame;
    m_panel->showAt(
        {visible.midX() - m_view->width() / 2.0, visible.maxY() - m_view->height() - topMargin});
}

void CaptureHUD::hide() {
    m_panel->hide();
}

} // namespace snapvane
