#include "platform/Platform.h"

#include "base/ProgramError.h"

namespace snapvane {

namespace {

Platform* installedPlatform = nullptr;

} // namespace

Platform& Platform::shared() {
    if (installedPlatform == nullptr) {
        programError("the platform was used before it was chosen");
    }
    return *installedPlatform;
}

void Platform::install(Platform* platform) {
    installedPlatform = platform;
}

} // namespace snapvane
