#include "capture/CaptureServiceError.h"

#include "base/Translation.h"

namespace snapvane {

CaptureServiceError CaptureServiceError::captureFailed(const QString& message) {
    return {Case::captureFailed, message};
}

CaptureServiceError CaptureServiceError::noDisplays() {
    return {Case::noDisplays, translated("No displays were found for capture.")};
}

CaptureServiceError CaptureServiceError::noMatchingDisplay() {
    return {Case::noMatchingDisplay, translated("The selection does not intersect a display.")};
}

CaptureServiceError CaptureServiceError::emptySelection() {
    return {Case::emptySelection, translated("The selection area is too small.")};
}

CaptureServiceError CaptureServiceError::pngEncodingFailed() {
    return {Case::pngEncodingFailed, translated("Could not encode PNG data.")};
}

} // namespace snapvane
