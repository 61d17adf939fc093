#pragma once

#include "platform/x11/X11Connection.h"

#include <QImage>

#include <cstddef>
#include <cstdint>
#include <memory>
#include <mutex>

#include <xcb/shm.h>

namespace snapvane::x11 {

/// Memory that the X server writes into directly. Attaching one costs several times as much as a
/// grab, so segments are kept and used again; see SegmentPool. Lives at most as long as the
/// connection it was attached on.
class SharedSegment {
public:
    /// Null when the server cannot attach memory of ours, as over a network.
    static std::unique_ptr<SharedSegment> attach(const Server& server, std::size_t size);
    ~SharedSegment();
    SharedSegment(const SharedSegment&) = delete;
    SharedSegment& operator=(const SharedSegment&) = delete;

    xcb_shm_seg_t id() const { return m_id; }
    std::uint8_t* data() const { return m_data; }
    std::size_t size() const { return m_size; }

private:
    SharedSegment(xcb_connection_t* connection, xcb_shm_seg_t id, std::uint8_t* data,
                  std::size_t size);

    xcb_connection_t* m_connection;
    xcb_shm_seg_t m_id;
    std::uint8_t* m_data;
    std::size_t m_size;
};

/// Keeps the segment of the last grab for the next one. A segment that an image still uses is not
/// in the pool, so that grabs that overlap never write over each other. Any thread.
class SegmentPool {
public:
    /// A segment of at least the size; null when none can be had.
    std::unique_ptr<SharedSegment> take(const Server& server, std::size_t size);
    void giveBack(std::unique_ptr<SharedSegment> segment);
    /// Returns the memory to the system. Also ends keeping when `keep` is false.
    void trim(bool keep = true);

private:
    std::mutex m_mutex;
    std::unique_ptr<SharedSegment> m_idle;
    bool m_keeping = true;
};

} // namespace snapvane::x11
