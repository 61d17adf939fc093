#include "platform/x11/RootGrabber.h"

#include "base/Translation.h"
#include "platform/PlatformError.h"
#include "platform/x11/CompositorBarrier.h"
#include "platform/x11/Xcb.h"

namespace snapvane::x11 {

namespace {

constexpr std::uint32_t allPlanes = ~0U;

PlatformError refused() {
    return PlatformError(translated("The display server did not let the screen be read."));
}

} // namespace

/// Shared with the images that use a segment, so that the connection outlives them.
struct RootGrabber::Resources {
    std::unique_ptr<OwnConnection> connection;
    PixelLayout layout;
    bool hasSharedMemory = false;
    SegmentPool segments;

    const Server& server() const { return connection->server(); }
};

namespace {

/// What an image that lies in a segment holds on to.
template <typename Resources> struct Lease {
    std::shared_ptr<Resources> resources;
    std::unique_ptr<SharedSegment> segment;

    static void end(void* lease) {
        const std::unique_ptr<Lease> ended(static_cast<Lease*>(lease));
        ended->resources->segments.giveBack(std::move(ended->segment));
    }
};

} // namespace

RootGrabber::RootGrabber() = default;

RootGrabber::~RootGrabber() {
    if (m_resources) {
        // A segment has to be detached while there is a connection.
        m_resources->segments.trim(false);
    }
}

QImage RootGrabber::grab(const DeviceRect& area, const std::vector<DeviceRect>& screens) {
    const std::scoped_lock lock(m_mutex);
    const auto resources = connected();
    passCompositorBarrier(resources->server(), area, screens);
    return resources->hasSharedMemory && resources->layout.isNativeRgb32()
               ? grabShared(resources, area)
               : grabBySocket(*resources, area);
}

void RootGrabber::waitForGlass(const std::vector<DeviceRect>& screens) {
    const std::scoped_lock lock(m_mutex);
    passCompositorBarrier(connected()->server(), {}, screens);
}

bool RootGrabber::trim() {
    const std::unique_lock lock(m_mutex, std::try_to_lock);
    if (lock.owns_lock() && m_resources) {
        m_resources->segments.trim();
    }
    return lock.owns_lock();
}

std::shared_ptr<RootGrabber::Resources> RootGrabber::connected() {
    if (m_resources && !m_resources->connection->isBroken()) {
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

QImage RootGrabber::grabShared(const std::shared_ptr<Resources>& resources,
                               const DeviceRect& area) {
    const Server& server = resources->server();
    const int stride = resources->layout.bytesPerLine(area.size.width);
    const auto size = static_cast<std::size_t>(stride) * static_cast<std::size_t>(area.size.height);
    auto segment = resources->segments.take(server, size);
    if (!segment) {
        resources->hasSharedMemory = false;
        return grabBySocket(*resources, area);
    }
    const auto cookie = xcb_shm_get_image(
        server.connection, server.root(), static_cast<std::int16_t>(area.origin.x),
        static_cast<std::int16_t>(area.origin.y), static_cast<std::uint16_t>(area.size.width),
        static_cast<std::uint16_t>(area.size.height), allPlanes, XCB_IMAGE_FORMAT_Z_PIXMAP,
        segment->id(), 0);
    xcb_generic_error_t* error = nullptr;
    const auto reply = owned(xcb_shm_get_image_reply(server.connection, cookie, &error));
    const auto ownedError = owned(error);
    if (!reply) {
        throw refused();
    }
    const std::uint8_t* pixels = segment->data();
    auto* lease = new Lease<Resources>{resources, std::move(segment)};
    return QImage(pixels, area.size.width, area.size.height, stride, QImage::Format_RGB32,
                  &Lease<Resources>::end, lease);
}

QImage RootGrabber::grabBySocket(const Resources& resources, const DeviceRect& area) {
    const Server& server = resources.server();
    const auto cookie = xcb_get_image(server.connection, XCB_IMAGE_FORMAT_Z_PIXMAP, server.root(),
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
