#pragma once

#include <QImage>

namespace snapvane {

/// A copy of the picture that shares no memory with the capture facility: R, G, B and 255 in memory
/// order, 8 bits each, 4 × width bytes a row. A null image when the picture has no pixels or there
/// is no memory for the copy. Any thread.
QImage makeStableCopy(const QImage& image);

} // namespace snapvane
