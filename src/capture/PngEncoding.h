#pragma once

#include <QByteArray>
#include <QImage>

namespace snapvane {

/// The picture as PNG: 24-bit RGB, no metadata. Throws CaptureServiceError::pngEncodingFailed. Any
/// thread; takes a while for a large picture.
QByteArray pngData(const QImage& image);

} // namespace snapvane
