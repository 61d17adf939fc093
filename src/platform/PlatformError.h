#pragma once

#include "base/LocalizedError.h"

namespace snapvane {

/// A failure of a platform facility, passed through to whoever shows or logs it.
class PlatformError : public LocalizedError {
public:
    using LocalizedError::LocalizedError;
};

} // namespace snapvane
