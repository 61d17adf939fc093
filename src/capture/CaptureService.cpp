#include "capture/CaptureService.h"

#include "base/Async.h"
#include "base/Rounding.h"
#include "base/Translation.h"
#include "capture/CaptureServiceError.h"
#include "capture/PngEncoding.h"
#include "capture/StableCopy.h"
#include "platform/Platform.h"

namespace snapvane::CaptureService {

namespace {

/// Points; a side shorter than this is no selection.
constexpr double minimumSide = 4.0;
constexpr double fallbackScale = 2.0;

bool isTooSmall(const GlobalRect& rect) {
    return rect.width() < minimumSide || rect.height() < minimumSide;
}

struct EncodedPicture {
    QImage stable;
    QByteArray png;
};

EncodedPicture copyAndEncode(const QImage& screenshot) {
    EncodedPicture picture;
    picture.stable = makeStableCopy(screenshot);
    if (picture.stable.isNull()) {
        throw CaptureServiceError::captureFailed(translated("Could not copy captured image."));
    }
    picture.png = pngData(picture.stable);
    return picture;
}

} // namespace

Facilities Facilities::shared() {
    return {&Platform::shared().capturer(), &Platform::shared().screens()};
}

QCoro::Task<CaptureResult> captureRegion(GlobalRect globalRect, Facilities facilities) {
    if (isTooSmall(globalRect)) {
        throw CaptureServiceError::emptySelection();
    }
    auto query = facilities.capturer->shareableContent(ContentQuery{
        .excludeDesktopWindows = false, .onScreenWindowsOnly = true, .listsWindows = false});
    const ShareableContent content = co_await query;
    if (content.displays.empty()) {
        throw CaptureServiceError::noDisplays();
    }
    const GlobalRect selection = globalRect.standardized();
    const auto chosen = display(selection, content.displays);
    if (!chosen) {
        throw CaptureServiceError::noMatchingDisplay();
    }
    const GlobalRect clipped = selection.intersection(chosen->frame);
    if (isTooSmall(clipped)) {
        throw CaptureServiceError::emptySelection();
    }
    const double scale = backingScaleFactor(clipped, facilities.screens->list());
    auto shot = facilities.capturer->screenshot(ContentFilter{chosen->id},
                                                configuration(clipped, *chosen, scale));
    QImage screenshot = co_await shot;
    auto encoding =
        runInBackground([picture = std::move(screenshot)] { return copyAndEncode(picture); });
    const EncodedPicture picture = co_await encoding;
    co_return CaptureResult{picture.png,
                            {picture.stable, {clipped.width(), clipped.height()}},
                            QDateTime::currentDateTime(),
                            clipped};
}

std::optional<ShareableDisplay> display(const GlobalRect& rect,
                                        const std::vector<ShareableDisplay>& displays) {
    const GlobalPoint middle = {rect.midX(), rect.midY()};
    for (const ShareableDisplay& candidate : displays) {
        if (candidate.frame.contains(middle)) {
            return candidate;
        }
    }
    for (const ShareableDisplay& candidate : displays) {
        if (candidate.frame.intersects(rect)) {
            return candidate;
        }
    }
    return std::nullopt;
}

double backingScaleFactor(const GlobalRect& rect, const ScreenList& screens) {
    for (const Screen& screen : screens) {
        if (screen.frame.intersects(rect)) {
            return screen.backingScale;
        }
    }
    return screens.empty() ? fallbackScale : screens.front().backingScale;
}

StreamConfiguration configuration(const GlobalRect& clipped, const ShareableDisplay& display,
                                  double scale) {
    StreamConfiguration result;
    result.sourceRect = clipped.offsetBy(-display.frame.minX(), -display.frame.minY());
    result.showsCursor = false;
    result.scalesToFit = false;
    result.outputSize = {std::max(1, roundedPixel(scale * clipped.width())),
                         std::max(1, roundedPixel(scale * clipped.height()))};
    return result;
}

} // namespace snapvane::CaptureService
