#include "capture/CaptureServiceError.h"

#include "support/QtPrinting.h"

#include <gtest/gtest.h>

namespace snapvane {

TEST(CaptureServiceError, DescribesEveryCaseToTheUser) {
    using Case = CaptureServiceError::Case;
    struct Row {
        CaptureServiceError error;
        Case errorCase = Case::captureFailed;
        const char* text = nullptr;
    };
    const Row rows[] = {
        {CaptureServiceError::captureFailed(QStringLiteral("Any text \u2192 as it is")),
         Case::captureFailed, "Any text \u2192 as it is"},
        {CaptureServiceError::captureFailed({}), Case::captureFailed, ""},
        {CaptureServiceError::noDisplays(), Case::noDisplays,
         "No displays were found for capture."},
        {CaptureServiceError::noMatchingDisplay(), Case::noMatchingDisplay,
         "The selection does not intersect a display."},
        {CaptureServiceError::emptySelection(), Case::emptySelection,
         "The selection area is too small."},
        {CaptureServiceError::pngEncodingFailed(), Case::pngEncodingFailed,
         "Could not encode PNG data."},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.text);
        EXPECT_EQ(row.error.errorCase(), row.errorCase);
        EXPECT_EQ(row.error.localizedDescription(), QString::fromUtf8(row.text));
        EXPECT_STREQ(row.error.what(), row.text);
    }
}

} // namespace snapvane
