#pragma once

#include <gtest/gtest.h>

#include <QImage>
#include <QString>

namespace snapvane::testing {

/// Whether two pictures have the same size and colours, alpha aside. If not, says how many pixels
/// differ and where the first one is, and leaves both pictures in the build folder's reports/ under
/// `name`.
::testing::AssertionResult samePicture(const QImage& expected, const QImage& actual,
                                       const QString& name);

/// The folder for what a failed test leaves behind; it exists.
QString reportsFolder();

} // namespace snapvane::testing
