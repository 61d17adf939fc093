#include "base/ProgramError.h"

#include <cstdio>
#include <cstdlib>

namespace snapvane {

void programError(std::string_view message, std::source_location where) {
    // Plain stdio: whatever is broken may be the very thing that the log depends on.
    std::fprintf(stderr, "Program error: %.*s (%s:%u, %s)\n", static_cast<int>(message.size()),
                 message.data(), where.file_name(), static_cast<unsigned>(where.line()),
                 where.function_name());
    std::fflush(stderr);
    std::abort();
}

} // namespace snapvane
