#pragma once

#include <QtGlobal>

#include <functional>

namespace snapvane::testing {

/// How much more memory this process has held at once since the object was made. A sanitizer keeps
/// much that the program has long given back, so under one only what is still allocated counts.
class PeakMemory {
public:
    PeakMemory();

    /// Bytes.
    [[nodiscard]] qint64 growth() const;

private:
    qint64 m_before;
};

/// Runs the event loop until the condition holds; false when some seconds have passed without that.
bool processEventsUntil(const std::function<bool()>& condition);

} // namespace snapvane::testing
