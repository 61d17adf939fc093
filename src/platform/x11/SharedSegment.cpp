#include "platform/x11/SharedSegment.h"

#include "platform/x11/Xcb.h"

#include <utility>

#include <sys/mman.h>
#include <unistd.h>

namespace snapvane::x11 {

namespace {

/// An anonymous file of the size, or −1.
int memoryFile(std::size_t size) {
    const int file = memfd_create("snapvane-grab", MFD_CLOEXEC);
    if (file >= 0 && ftruncate(file, static_cast<off_t>(size)) != 0) {
        close(file);
        return -1;
    }
    return file;
}

} // namespace

std::unique_ptr<SharedSegment> SharedSegment::attach(const Server& server, std::size_t size) {
    const int file = memoryFile(size);
    if (file < 0) {
        return nullptr;
    }
    void* memory = mmap(nullptr, size, PROT_READ | PROT_WRITE, MAP_SHARED, file, 0);
    if (memory == MAP_FAILED) {
        close(file);
        return nullptr;
    }
    const xcb_shm_seg_t id = xcb_generate_id(server.connection);
    // The request takes the file descriptor over.
    const auto cookie = xcb_shm_attach_fd_checked(server.connection, id, file, 0);
    if (const auto error = owned(xcb_request_check(server.connection, cookie))) {
        munmap(memory, size);
        return nullptr;
    }
    return std::unique_ptr<SharedSegment>(
        new SharedSegment(server.connection, id, static_cast<std::uint8_t*>(memory), size));
}

SharedSegment::SharedSegment(xcb_connection_t* connection, xcb_shm_seg_t id, std::uint8_t* data,
                             std::size_t size)
    : m_connection(connection), m_id(id), m_data(data), m_size(size) {}

SharedSegment::~SharedSegment() {
    xcb_shm_detach(m_connection, m_id);
    xcb_flush(m_connection);
    munmap(m_data, m_size);
}

std::unique_ptr<SharedSegment> SegmentPool::take(const Server& server, std::size_t size) {
    {
        const std::scoped_lock lock(m_mutex);
        if (m_idle && m_idle->size() >= size) {
            return std::exchange(m_idle, nullptr);
        }
        m_idle.reset();
    }
    return SharedSegment::attach(server, size);
}

void SegmentPool::giveBack(std::unique_ptr<SharedSegment> segment) {
    const std::scoped_lock lock(m_mutex);
    const bool larger = !m_idle || m_idle->size() < segment->size();
    if (m_keeping && larger) {
        m_idle = std::move(segment);
    }
}

void SegmentPool::trim(bool keep) {
    const std::scoped_lock lock(m_mutex);
    m_idle.reset();
    m_keeping = keep;
}

} // namespace snapvane::x11
