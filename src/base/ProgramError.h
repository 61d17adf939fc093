#pragma once

#include <source_location>
#include <string_view>

namespace snapvane {

/// Stops the program because an assumption of its own code is broken: writes the message and the
/// place in the source to standard error and aborts. Holds in release builds too. Any thread.
[[noreturn]] void programError(std::string_view message,
                               std::source_location where = std::source_location::current());

} // namespace snapvane
