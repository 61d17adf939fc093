#include "platform/x11/RootGrabber.h"

#include "base/Translation.h"
#include "platform/PlatformError.h"
#include "platform/x11/CompositorBarrier.h"
#include "platform/x11/ShareableWindows.h"
#include "platform/x11/StackComposition.h"
#include "platform/x11/Xcb.h"

#include <cstring>

namespace snapvane::x11 {

namespace {

constexpr std::uint32_t allPlanes = ~0U;
// How often a picture is put together anew because windows came, went or moved meanwhile.
constexpr int mostAttempts = 3;

PlatformError refused() {
    return PlatformError(translated("The display server did not let the screen be read."));
}

/// Of requests about windows that were gone by then; unread they would pile up.
void dropErrors(const Server& server) {
    while (owned(xcb_poll_for_event(server.connection))) {
    }
}

/// Copies the region (the server's space) from a picture of its bounding rectangle into one of the
/// area.
void putRegion(QImage& picture, const DeviceRect& area, const QImage& part, const QRegion& region) {
    const QPoint corner = region.boundingRect().topLeft();
    constexpr qsizetype bytesPerPixel = 4;
    for (const QRect& rect : region) {
        for (int y = rect.top(); y <= rect.bottom(); ++y) {
            std::memcpy(
                picture.scanLine(y - area.origin.y) + bytesPerPixel * (rect.x() - area.origin.x),
                part.constScanLine(y - corner.y()) + bytesPerPixel * (rect.x() - corner.x()),
                static_cast<std::size_t>(bytesPerPixel * rect.width()));
        }
    }
}

} // namespace

/// Shared with the images that use a segment, so that the connection outlives them.
struct RootGrabber::Resources {
    std::unique_ptr<OwnConnection> connection;
    PixelLayout layout;
    bool hasSharedMemory = false;
    SegmentPool segments;
    // What lies beneath windows needs memory of its own beside the picture that it goes into.
    SegmentPool segmentsBeneath;
    // Made when a window has to be left out for the first time.
    std::optional<StackComposition> composition;
    CompositorHabits habits;

    const Server& server() const { return connection->server(); }
};

namespace {

/// What an image that lies in a segment holds on to.
template <typename Resources> struct Lease {
    std::shared_ptr<Resources> resources;
    SegmentPool* pool = nullptr;
    std::unique_ptr<SharedSegment> segment;

    static void end(void* lease) {
        const std::unique_ptr<Lease> ended(static_cast<Lease*>(lease));
        ended->pool->giveBack(std::move(ended->segment));
    }
};

} // namespace

RootGrabber::RootGrabber() = default;

RootGrabber::~RootGrabber() {
    if (m_resources) {
        // A segment has to be detached while there is a connection.
        m_resources->segments.trim(false);
        m_resources->segmentsBeneath.trim(false);
    }
}

QImage RootGrabber::grab(const DeviceRect& area, const std::vector<DeviceRect>& screens,
                         const std::vector<std::uint32_t>& excluded) {
    const std::scoped_lock lock(m_mutex);
    const auto resources = connected();
    passCompositorBarrier(resources->server(), resources->habits, area, screens);
    return excluded.empty() ? read(resources, resources->server().root(), area)
                            : grabWithout(excluded, resources, area);
}

std::vector<ShareableWindow> RootGrabber::windows(const ContentQuery& query) {
    const std::scoped_lock lock(m_mutex);
    return shareableWindows(connected()->server(), query);
}

void RootGrabber::waitForGlass(const std::vector<DeviceRect>& screens) {
    const std::scoped_lock lock(m_mutex);
    const auto resources = connected();
    passCompositorBarrier(resources->server(), resources->habits, {}, screens);
}

bool RootGrabber::trim() {
    const std::unique_lock lock(m_mutex, std::try_to_lock);
    if (lock.owns_lock() && m_resources) {
        m_resources->segments.trim();
        m_resources->segmentsBeneath.trim();
    }
    return lock.owns_lock();
}

std::shared_ptr<RootGrabber::Resources> RootGrabber::connected() {
    if (m_resources && !m_resources->connection->isBroken()) {
        dropErrors(m_resources->server());
        return m_resources;
    }
    auto resources = std::make_shared<Resources>();
    resources->connection = OwnConnection::open();
    if (!resources->connection) {
        throw PlatformError(translated("The display server cannot be reached."));
    }
    resources->layout = rootPixelLayout(resources->server());
    resources->hasSharedMemory = hasExtension(resources->server(), &xcb_shm_id);
    m_resources = std::move(resources);
    return m_resources;
}

QImage RootGrabber::grabWithout(const std::vector<std::uint32_t>& excluded,
                                const std::shared_ptr<Resources>& resources,
                                const DeviceRect& area) {
    const Server& server = resources->server();
    if (!resources->composition) {
        resources->composition.emplace(server);
    }
    QImage picture;
    WindowStack stack = WindowStack::read(server);
    for (int attempt = 0; attempt < mostAttempts; ++attempt) {
        const QRegion hidden = stack.regionOf(excluded, area);
        // The first one's memory has to be free for the next.
        picture = {};
        picture = read(resources, server.root(), area);
        if (hidden.isEmpty() || !resources->composition->isPossible()) {
            return picture;
        }
        const ServerPixmap beneath = resources->composition->compose(stack, excluded, hidden);
        const QSize size = hidden.boundingRect().size();
        putRegion(picture, area,
                  read(resources, beneath.id(), {{0, 0}, {size.width(), size.height()}}), hidden);
        // Of what moved meanwhile neither picture may have all of it.
        WindowStack now = WindowStack::read(server);
        if (now == stack) {
            break;
        }
        stack = std::move(now);
    }
    return picture;
}

QImage RootGrabber::read(const std::shared_ptr<Resources>& resources, xcb_drawable_t drawable,
                         const DeviceRect& area) {
    return resources->hasSharedMemory && resources->layout.isNativeRgb32()
               ? grabShared(resources, drawable, area)
               : grabBySocket(*resources, drawable, area);
}

QImage RootGrabber::grabShared(const std::shared_ptr<Resources>& resources, xcb_drawable_t drawable,
                               const DeviceRect& area) {
    const Server& server = resources->server();
    const int stride = resources->layout.bytesPerLine(area.size.width);
    const auto size = static_cast<std::size_t>(stride) * static_cast<std::size_t>(area.size.height);
    SegmentPool& pool =
        drawable == server.root() ? resources->segments : resources->segmentsBeneath;
    auto segment = pool.take(server, size);
    if (!segment) {
        resources->hasSharedMemory = false;
        return grabBySocket(*resources, drawable, area);
    }
    const auto cookie = xcb_shm_get_image(
        server.connection, drawable, static_cast<std::int16_t>(area.origin.x),
        static_cast<std::int16_t>(area.origin.y), static_cast<std::uint16_t>(area.size.width),
        static_cast<std::uint16_t>(area.size.height), allPlanes, XCB_IMAGE_FORMAT_Z_PIXMAP,
        segment->id(), 0);
    xcb_generic_error_t* error = nullptr;
    const auto reply = owned(xcb_shm_get_image_reply(server.connection, cookie, &error));
    const auto ownedError = owned(error);
    if (!reply) {
        throw refused();
    }
    std::uint8_t* pixels = segment->data();
    auto* lease = new Lease<Resources>{resources, &pool, std::move(segment)};
    return QImage(pixels, area.size.width, area.size.height, stride, QImage::Format_RGB32,
                  &Lease<Resources>::end, lease);
}

QImage RootGrabber::grabBySocket(const Resources& resources, xcb_drawable_t drawable,
                                 const DeviceRect& area) {
    const Server& server = resources.server();
    const auto cookie = xcb_get_image(server.connection, XCB_IMAGE_FORMAT_Z_PIXMAP, drawable,
                                      static_cast<std::int16_t>(area.origin.x),
                                      static_cast<std::int16_t>(area.origin.y),
                                      static_cast<std::uint16_t>(area.size.width),
                                      static_cast<std::uint16_t>(area.size.height), allPlanes);
    xcb_generic_error_t* error = nullptr;
    const auto reply = owned(xcb_get_image_reply(server.connection, cookie, &error));
    const auto ownedError = owned(error);
    if (!reply) {
        throw refused();
    }
    QImage image = rgb32FromPixels(xcb_get_image_data(reply.get()), area.size.width,
                                   area.size.height, resources.layout);
    if (image.isNull()) {
        throw PlatformError(translated("The display's pixel format is not supported."));
    }
    return image;
}

} // namespace snapvane::x11
