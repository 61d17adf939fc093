#include "selection/SelectionOverlayController.h"

#include "base/Async.h"
#include "base/Log.h"
#include "base/ProgramError.h"
#include "platform/Screens.h"
#include "selection/AppPreferences.h"

#include <algorithm>

namespace snapvane {

namespace {

const Log& selectionLog() {
    static const Log log("Selection");
    return log;
}

/// True when nothing differs but the room that docks leave, which does not concern a selection.
bool isSameLayout(const ScreenList& a, const ScreenList& b) {
    return std::equal(a.begin(), a.end(), b.begin(), b.end(), [](const Screen& x, const Screen& y) {
        return x.id == y.id && x.nativeFrame == y.nativeFrame && x.backingScale == y.backingScale &&
               x.frame == y.frame;
    });
}

} // namespace

SelectionOverlayController::SelectionOverlayController(const Collaborators& collaborators)
    : m_with(collaborators) {
    connect(&m_with.screens, &Screens::changed, this, &SelectionOverlayController::screensChanged);
}

SelectionOverlayController::~SelectionOverlayController() = default;

void SelectionOverlayController::present(Completion completion, CaptureTrigger trigger) {
    dismiss();
    m_completion = std::move(completion);
    m_trigger = trigger;
    m_sessionRunning = true;
    m_screens = m_with.screens.list();
    advanceGeneration();
    startDetached(presentWhenReady(m_presentGeneration, trigger));
}

void SelectionOverlayController::dismiss() {
    advanceGeneration();
    m_sessionRunning = false;
    m_with.guideLines.setCaptureSessionActive(false);
    m_with.guideLines.hideOverlays();
    m_with.magnifier.dismiss();
    m_displaySnapshots.clear();
    if (m_overlayWindow) {
        // Taken out first: what happens while it goes must not find it any more.
        const auto window = std::move(m_overlayWindow);
        window->orderOut();
    }
}

SelectionOverlayController::Completion SelectionOverlayController::takeCompletion() {
    return std::exchange(m_completion, nullptr);
}

void SelectionOverlayController::selectionOverlayViewDidComplete(SelectionOverlayView&,
                                                                 const GlobalRect& rect) {
    finish(m_overlayWindow ? std::optional(rect) : std::nullopt);
}

void SelectionOverlayController::selectionOverlayViewDidCancel(SelectionOverlayView&) {
    finish(std::nullopt);
}

QCoro::Task<> SelectionOverlayController::presentWhenReady(std::int64_t token,
                                                           CaptureTrigger trigger) {
    const QPointer<SelectionOverlayController> self(this);
    if (trigger == CaptureTrigger::Menu) {
        auto menus = m_with.overlays.menusClosed();
        co_await menus;
        if (!self || token != m_presentGeneration) {
            co_return;
        }
    }
    DisplaySnapshotList snapshots;
    if (m_with.preferences.showSelectionMagnifier()) {
        auto taking = takeSnapshots();
        snapshots = co_await taking;
    }
    if (self && token == m_presentGeneration) {
        presentOverlay(snapshots);
    }
}

QCoro::Task<DisplaySnapshotList> SelectionOverlayController::takeSnapshots() {
    try {
        auto taking = m_with.snapshots.captureAllDisplays();
        DisplaySnapshotList snapshots = co_await taking;
        co_return snapshots;
    } catch (const std::exception&) {
        // Without snapshots there is no loupe in this session; the selection itself needs none.
        co_return DisplaySnapshotList();
    }
}

void SelectionOverlayController::presentOverlay(const DisplaySnapshotList& snapshots) {
    m_displaySnapshots = snapshots;
    if (!snapshots.empty()) {
        m_with.magnifier.prepare(snapshots);
    }
    m_overlayWindow = std::make_unique<SelectionOverlayWindow>(
        m_with.overlays, SelectionOverlayWindow::Settings{m_with.screens.list(),
                                                          m_with.preferences.selectionDimAmount()});
    preparePointerCallback(m_overlayWindow->contentView());
    m_overlayWindow->onInputRefused = [this](const QString& reason) {
        selectionLog().error(
            QStringLiteral("The keyboard or the pointer is held by another program: %1")
                .arg(reason));
        finish(std::nullopt);
    };
    m_overlayWindow->onOutdated = [this] { restart(); };
    if (!m_overlayWindow->open()) {
        finish(std::nullopt);
        return;
    }

    m_with.guideLines.setCaptureSessionActive(true);
    if (m_with.preferences.showCrosshairLinesWhileCapturing()) {
        m_with.guideLines.rebuildOverlays();
        m_with.guideLines.hideOverlays();
        m_with.guideLines.updateCursor(m_with.screens.pointerLocation());
    }
    m_overlayWindow->makeKeyAndOrderFront();
    if (!snapshots.empty()) {
        m_with.magnifier.update(m_with.screens.pointerLocation(), {});
    }
}

void SelectionOverlayController::preparePointerCallback(SelectionOverlayView& view) {
    view.delegate = this;
    const QPointer<SelectionOverlayController> self(this);
    GuideLines* lines = &m_with.guideLines;
    view.onPointerChange = [self, lines](GlobalPoint point, GlobalSize size) {
        lines->updateCursor(point);
        if (self) {
            self->m_with.magnifier.update(point, size);
        }
    };
}

void SelectionOverlayController::finish(std::optional<GlobalRect> result) {
    const Completion completion = takeCompletion();
    dismiss();
    if (completion) {
        completion(result);
    }
}

void SelectionOverlayController::advanceGeneration() {
    if (__builtin_add_overflow(m_presentGeneration, std::int64_t{1}, &m_presentGeneration)) {
        programError("the session counter has run over");
    }
}

void SelectionOverlayController::screensChanged() {
    if (m_sessionRunning && !isSameLayout(m_screens, m_with.screens.list())) {
        restart();
    }
}

void SelectionOverlayController::restart() {
    selectionLog().notice(QStringLiteral("The desktop changed during a selection."));
    present(takeCompletion(), m_trigger);
}

} // namespace snapvane
