#include "capture/StableCopy.h"

#include "base/ProgramError.h"

namespace snapvane {

QImage makeStableCopy(const QImage& image) {
    if (image.width() < 1 || image.height() < 1) {
        return {};
    }
    qsizetype bytesPerRow = 0;
    if (__builtin_mul_overflow(qsizetype{4}, qsizetype{image.width()}, &bytesPerRow)) {
        programError("a row of pixels does not fit the address space");
    }
    // The fourth byte of what the screen delivers is undefined; this format sets it to 255.
    QImage copy = image.convertToFormat(QImage::Format_RGBX8888);
    if (!copy.isNull() && copy.constBits() == image.constBits()) {
        copy = copy.copy();
    }
    copy.setDevicePixelRatio(1);
    return copy;
}

} // namespace snapvane
