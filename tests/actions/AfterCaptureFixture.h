#pragma once

#include "FakeUploader.h"
#include "HomeFolder.h"
#include "actions/AfterCaptureFacilities.h"
#include "actions/CapturePreferences.h"
#include "base/Await.h"
#include "base/LocalizedError.h"
#include "base/UserDefaults.h"
#include "platform/null/NullPlatform.h"
#include "selection/LogCapture.h"
#include "support/QtPrinting.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace snapvane::testing {

struct ShownNotice {
    QString text;
    double duration = 0;
    /// How often the clipboard had been written by then.
    std::size_t writesBefore = 0;
};

/// A desktop in memory and a home folder for what happens after captures.
class AfterCaptureTest : public ::testing::Test {
protected:
    static constexpr auto copyAction = AfterCaptureAction::copyToClipboard;
    static constexpr auto uploadAction = AfterCaptureAction::uploadFerrybox;
    static constexpr auto saveAction = AfterCaptureAction::saveToFolder;

    static CaptureResult captureOf(const QByteArray& png, int second = 9) {
        CaptureResult capture;
        capture.pngData = png;
        capture.image.bitmap = QImage(3, 2, QImage::Format_RGB32);
        capture.image.bitmap.fill(Qt::red);
        capture.capturedAt = QDateTime(QDate(2025, 3, 2), QTime(14, 3, second));
        return capture;
    }

    AfterCaptureFacilities facilities() {
        return {.preferences = preferences,
                .pasteboard = pasteboard,
                .uploader = uploader,
                .showNotice =
                    [this](const QString& text, double duration) {
                        notices.push_back({text, duration, pasteboard.writes.size()});
                    },
                .askUser = [this](const CaptureResult& result) { asked.push_back(result); }};
    }

    QStringList noticeTexts() const {
        QStringList texts;
        for (const ShownNotice& notice : notices) {
            texts += notice.text;
        }
        return texts;
    }
    /// "Category: text" of what was logged, all of it at error level.
    QStringList logged() const {
        QStringList texts;
        for (const LogCapture::Line& line : log.lines()) {
            texts += QString::fromStdString(line.category + ": " + line.text);
            EXPECT_EQ(line.type, QtCriticalMsg) << line.text;
        }
        return texts;
    }

    void failUploads(const char* description) {
        uploader.failure = std::make_exception_ptr(LocalizedError(QString::fromUtf8(description)));
    }
    /// Nothing can be saved from now on, and the system says "Snapvane: Not a directory".
    void failSaves() const { home.makeFile("Pictures"); }

    HomeFolder home;
    UserDefaults defaults{home.path("Snapvane.conf")};
    CapturePreferences preferences{defaults};
    null::NullPasteboard pasteboard;
    FakeUploader uploader;
    std::vector<ShownNotice> notices;
    std::vector<CaptureResult> asked;
    LogCapture log;
};

} // namespace snapvane::testing
