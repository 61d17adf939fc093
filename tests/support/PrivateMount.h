#pragma once

namespace snapvane::testing {

/// Puts an empty file system of 64 KiB on `folder` that only the calling process and its children
/// see. For the time between fork and exec: no memory is allocated. False where it is not
/// permitted.
bool mountTinyDisk(const char* folder);

/// Whether this machine permits that.
bool canMountPrivately();

} // namespace snapvane::testing
