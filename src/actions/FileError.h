#pragma once

#include "base/LocalizedError.h"

#include <system_error>

namespace snapvane {

/// A failure of the file system: the name of the file or folder and the system's own words.
class FileError : public LocalizedError {
public:
    FileError(const QString& path, const QString& systemText);
    FileError(const QString& path, std::error_code code);
};

} // namespace snapvane
