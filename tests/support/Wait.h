#pragma once

#include <chrono>
#include <functional>
#include <string>

namespace snapvane::testing {

/// How much longer everything may take than in the release build: 1, or more under a sanitizer.
int slowness();

/// Asks `condition` every few milliseconds until it holds. False when `limit`, stretched by
/// slowness(), has passed without that.
bool waitUntil(const std::function<bool()>& condition, std::chrono::milliseconds limit,
               std::chrono::milliseconds interval = std::chrono::milliseconds(10));

/// The same, but throws std::runtime_error naming `what` when the time has passed.
void require(const std::string& what, const std::function<bool()>& condition,
             std::chrono::milliseconds limit = std::chrono::seconds(10));

void pause(std::chrono::milliseconds duration);

} // namespace snapvane::testing
