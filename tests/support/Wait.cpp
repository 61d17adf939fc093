#include "Wait.h"

#include <stdexcept>
#include <thread>

namespace snapvane::testing {

int slowness() {
#ifdef SNAPVANE_SANITIZED
    return 4;
#else
    return 1;
#endif
}

bool waitUntil(const std::function<bool()>& condition, std::chrono::milliseconds limit,
               std::chrono::milliseconds interval) {
    const auto end = std::chrono::steady_clock::now() + limit * slowness();
    while (!condition()) {
        if (std::chrono::steady_clock::now() >= end) {
            return false;
        }
        std::this_thread::sleep_for(interval);
    }
    return true;
}

void require(const std::string& what, const std::function<bool()>& condition,
             std::chrono::milliseconds limit) {
    if (!waitUntil(condition, limit)) {
        throw std::runtime_error("waited in vain for: " + what);
    }
}

void pause(std::chrono::milliseconds duration) {
    std::this_thread::sleep_for(duration);
}

} // namespace snapvane::testing
