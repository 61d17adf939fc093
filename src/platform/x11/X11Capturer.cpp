#include "platform/x11/X11Capturer.h"

#include "base/Async.h"
#include "base/Translation.h"
#include "platform/PlatformError.h"
#include "platform/x11/X11Screens.h"
#include "platform/x11/Xcb.h"

namespace snapvane::x11 {

namespace {

constexpr std::chrono::seconds keepMemory(5);

} // namespace

X11Capturer::X11Capturer(X11Screens& screens) : m_screens(screens) {
    m_trim.setSingleShot(true);
    QObject::connect(&m_trim, &QTimer::timeout, &m_trim, [this] {
        if (!m_grabber.trim()) {
            m_trim.start(keepMemory);
        }
    });
}

bool X11Capturer::preflightAccess() {
    const Server server = qtServer();
    const auto cookie =
        xcb_get_image(server.connection, XCB_IMAGE_FORMAT_Z_PIXMAP, server.root(), 0, 0, 1, 1, ~0U);
    xcb_generic_error_t* error = nullptr;
    const auto reply = owned(xcb_get_image_reply(server.connection, cookie, &error));
    const auto ownedError = owned(error);
    return reply != nullptr;
}

QCoro::Task<ShareableContent> X11Capturer::shareableContent(ContentQuery query) {
    ShareableContent content;
    for (const Screen& screen : m_screens.list()) {
        content.displays.push_back({screen.id, screen.frame});
    }
    if (query.listsWindows) {
        RootGrabber* grabber = &m_grabber;
        auto listing = runInBackground([grabber, query] { return grabber->windows(query); });
        content.windows = co_await listing;
    }
    co_return content;
}

QCoro::Task<QImage> X11Capturer::screenshot(ContentFilter filter,
                                            StreamConfiguration configuration) {
    const ScreenList screens = m_screens.list();
    const auto screen =
        std::find_if(screens.begin(), screens.end(), [&filter](const Screen& candidate) {
            return candidate.id == filter.displayId;
        });
    if (screen == screens.end()) {
        throw PlatformError(translated("The display is no longer connected."));
    }
    const PixelRect source =
        ScreenMapping::sourcePixels(*screen, configuration.sourceRect, configuration.outputSize);
    const DeviceRect area = ScreenMapping::deviceRect(*screen, source);
    const auto frames = m_screens.nativeFrames();
    RootGrabber* grabber = &m_grabber;
    m_trim.start(keepMemory);
    auto grab = runInBackground([grabber, area, frames, excluded = filter.excludedWindows] {
        return grabber->grab(area, frames, excluded);
    });
    QImage image = co_await grab;
    co_return image;
}

} // namespace snapvane::x11
