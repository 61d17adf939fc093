#include "capture/DisplaySnapshotStore.h"

#include "base/AppIdentity.h"
#include "base/Async.h"
#include "capture/CaptureService.h"
#include "capture/StableCopy.h"
#include "platform/Platform.h"

namespace snapvane::DisplaySnapshotStore {

namespace {

std::vector<std::uint32_t> idsOf(const std::vector<ShareableWindow>& windows) {
    std::vector<std::uint32_t> ids;
    ids.reserve(windows.size());
    for (const ShareableWindow& window : windows) {
        ids.push_back(window.id);
    }
    return ids;
}

/// Gives the memory of the screenshot back before it is through, so that the next one can use it.
QImage copyAndRelease(QImage& screenshot) {
    QImage copy = makeStableCopy(screenshot);
    screenshot = {};
    return copy;
}

SnapshotPlace placeOn(const DisplaySnapshot& snapshot, GlobalPoint point) {
    return {&snapshot,
            {point.x - snapshot.screenFrame.minX(), point.y - snapshot.screenFrame.minY()}};
}

} // namespace

Facilities Facilities::shared() {
    return {&Platform::shared().capturer(), &Platform::shared().screens(),
            QLatin1String(applicationIdentifier)};
}

QCoro::Task<DisplaySnapshotList> captureAllDisplays(Facilities facilities) {
    DisplaySnapshotList snapshots;
    auto query = facilities.capturer->shareableContent(ContentQuery{
        .excludeDesktopWindows = false, .onScreenWindowsOnly = true, .listsWindows = true});
    const ShareableContent content = co_await query;
    const ScreenList screens = facilities.screens->list();
    const std::vector<std::uint32_t> own =
        idsOf(ownApplicationWindows(content, facilities.bundleIdentifier));
    for (const Screen& screen : screens) {
        const auto display = CaptureService::display(screen.frame, content.displays);
        if (!display) {
            continue;
        }
        const StreamConfiguration configuration =
            CaptureService::configuration(display->frame, *display, screen.backingScale);
        auto shot = facilities.capturer->screenshot(ContentFilter{display->id, own}, configuration);
        QImage screenshot = co_await shot;
        auto copying = runInBackground(
            [picture = std::move(screenshot)]() mutable { return copyAndRelease(picture); });
        const QImage copy = co_await copying;
        if (!copy.isNull()) {
            snapshots.push_back({screen.frame, screen.backingScale, copy});
        }
    }
    co_return snapshots;
}

std::optional<SnapshotPlace> snapshotFor(GlobalPoint point, const DisplaySnapshotList& list) {
    if (list.empty()) {
        return std::nullopt;
    }
    const auto found =
        std::find_if(list.begin(), list.end(), [point](const DisplaySnapshot& snapshot) {
            return snapshot.screenFrame.contains(point);
        });
    return placeOn(found == list.end() ? list.front() : *found, point);
}

std::vector<ShareableWindow> ownApplicationWindows(const ShareableContent& content,
                                                   const QString& bundleIdentifier) {
    std::vector<ShareableWindow> own;
    if (bundleIdentifier.isEmpty()) {
        return own;
    }
    std::copy_if(content.windows.begin(), content.windows.end(), std::back_inserter(own),
                 [&bundleIdentifier](const ShareableWindow& window) {
                     return window.owningApplication &&
                            window.owningApplication->bundleIdentifier == bundleIdentifier;
                 });
    return own;
}

} // namespace snapvane::DisplaySnapshotStore
