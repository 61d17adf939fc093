#include "actions/CapturePostActionExecutor.h"

#include "base/Await.h"
#include "support/QtPrinting.h"

#include <gtest/gtest.h>

#include <QDir>
#include <QTemporaryDir>

namespace snapvane {

namespace {

QStringList messages;

void keepMessage(QtMsgType, const QMessageLogContext& context, const QString& message) {
    messages.append(QStringLiteral("%1|%2").arg(QString::fromUtf8(context.category), message));
}

/// A home folder and a log of its own for one test.
class CapturePostActionExecutorTest : public ::testing::Test {
public:
    CapturePostActionExecutorTest() {
        qputenv("HOME", QFile::encodeName(m_home.path()));
        messages.clear();
        m_handlerBefore = qInstallMessageHandler(keepMessage);
    }
    ~CapturePostActionExecutorTest() override {
        qInstallMessageHandler(m_handlerBefore);
        qputenv("HOME", m_homeBefore);
    }

protected:
    static CaptureResult result() {
        CaptureResult capture;
        capture.pngData = "picture";
        capture.capturedAt = QDateTime(QDate(2025, 3, 2), QTime(14, 3, 9));
        return capture;
    }

    QString inHome(const char* path) const { return m_home.filePath(QString::fromUtf8(path)); }

private:
    QByteArray m_homeBefore = qgetenv("HOME");
    QTemporaryDir m_home;
    QtMessageHandler m_handlerBefore = nullptr;
};

} // namespace

TEST_F(CapturePostActionExecutorTest, SavesIntoTheDefaultFolder) {
    await(CapturePostActionExecutor::runConfiguredAction(result()));
    QFile file(inHome("Pictures/Snapvane/Snapvane 2025-03-02 14.03.09.png"));
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    EXPECT_EQ(file.readAll(), "picture");
    EXPECT_EQ(messages, QStringList());
}

TEST_F(CapturePostActionExecutorTest, LogsAFailureAndThrowsNothing) {
    QFile obstacle(inHome("Pictures"));
    ASSERT_TRUE(obstacle.open(QIODevice::WriteOnly));
    EXPECT_NO_THROW(await(CapturePostActionExecutor::runConfiguredAction(result())));
    EXPECT_EQ(messages, QStringList(QStringLiteral(
                            "AfterCaptureBatch|Save failed: Snapvane: Not a directory")));
}

} // namespace snapvane
