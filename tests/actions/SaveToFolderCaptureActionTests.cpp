#include "actions/SaveToFolderCaptureAction.h"

#include "FileSizeLimit.h"
#include "OrdinaryUser.h"
#include "actions/FileError.h"
#include "base/Async.h"
#include "base/Await.h"
#include "support/QtPrinting.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QDir>
#include <QFile>
#include <QSemaphore>
#include <QTemporaryDir>
#include <QThreadPool>

#include <sys/stat.h>

namespace snapvane {

namespace {

const QString pictureName = QStringLiteral("Snapvane 2025-03-09 14.05.31.png");

class SaveToFolderTest : public ::testing::Test {
protected:
    static CaptureResult captureOf(const QByteArray& png, int milliseconds = 0) {
        CaptureResult result;
        result.pngData = png;
        result.capturedAt = QDateTime(QDate(2025, 3, 9), QTime(14, 5, 31, milliseconds));
        return result;
    }

    static std::optional<QString> save(const QString& folder, const CaptureResult& result) {
        SaveToFolderCaptureAction action([folder] { return folder; });
        return await(action.perform(result));
    }

    /// The failure's text; an empty one when there was no failure.
    static QString failureOf(const QString& folder, const QByteArray& png = "picture") {
        try {
            save(folder, captureOf(png));
        } catch (const FileError& error) {
            return error.localizedDescription();
        }
        return {};
    }

    QString path(const char* relative) const {
        return m_root.filePath(QString::fromUtf8(relative));
    }
    static QString inFolder(const QString& folder, const QString& name) {
        return QDir(folder).filePath(name);
    }
    static QStringList entries(const QString& folder) {
        return QDir(folder).entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot);
    }
    static QByteArray contents(const QString& filePath) {
        QFile file(filePath);
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("unreadable");
    }
    void makeFile(const char* relative, const QByteArray& bytes = {}) const {
        QFile file(path(relative));
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(bytes);
    }
    static mode_t permissionsOf(const QString& filePath) {
        struct stat status = {};
        EXPECT_EQ(stat(QFile::encodeName(filePath).constData(), &status), 0);
        return status.st_mode & 07777;
    }

    QTemporaryDir m_root;
};

} // namespace

TEST_F(SaveToFolderTest, KnowsItsIdentifierAndFolder) {
    const SaveToFolderCaptureAction action([] { return QStringLiteral("/somewhere"); });
    EXPECT_EQ(action.id(), QStringLiteral("save-to-folder"));
}

TEST_F(SaveToFolderTest, WritesTheBytesUnderTheNameOfTheTime) {
    QByteArray png(300'000, '\0');
    for (qsizetype i = 0; i < png.size(); ++i) {
        png[i] = static_cast<char>(i * 7);
    }
    EXPECT_EQ(save(m_root.path(), captureOf(png)), QStringLiteral("Saved to ") + pictureName);
    EXPECT_EQ(entries(m_root.path()), QStringList(pictureName));
    EXPECT_EQ(contents(inFolder(m_root.path(), pictureName)), png);
}

TEST_F(SaveToFolderTest, CreatesTheFolderWithItsParents) {
    const QString folder = path("not/there yet/at \u00e4ll");
    EXPECT_EQ(save(folder, captureOf("picture")), QStringLiteral("Saved to ") + pictureName);
    EXPECT_EQ(contents(inFolder(folder, pictureName)), "picture");
}

TEST_F(SaveToFolderTest, ReplacesACaptureOfTheSameSecond) {
    save(m_root.path(), captureOf("first and longer", 100));
    save(m_root.path(), captureOf("second", 900));
    EXPECT_EQ(entries(m_root.path()), QStringList(pictureName));
    EXPECT_EQ(contents(inFolder(m_root.path(), pictureName)), "second");
}

TEST_F(SaveToFolderTest, ReplacesAFileThatIsNotItsOwn) {
    makeFile(pictureName.toUtf8().constData(), "something else");
    save(m_root.path(), captureOf("picture"));
    EXPECT_EQ(contents(inFolder(m_root.path(), pictureName)), "picture");
}

TEST_F(SaveToFolderTest, GivesTheFileThePermissionsThatTheUserWants) {
    struct Case {
        mode_t mask;
        mode_t permissions;
    };
    for (const Case& c : {Case{022, 0644}, Case{077, 0600}, Case{002, 0664}}) {
        SCOPED_TRACE(c.mask);
        const QTemporaryDir folder;
        const mode_t before = umask(c.mask);
        save(folder.path(), captureOf("picture"));
        umask(before);
        EXPECT_EQ(permissionsOf(inFolder(folder.path(), pictureName)), c.permissions);
    }
}

TEST_F(SaveToFolderTest, FailsWhereTheFolderIsAFile) {
    makeFile("folder", "precious");
    EXPECT_EQ(failureOf(path("folder")), QStringLiteral("folder: Not a directory"));
    EXPECT_EQ(contents(path("folder")), "precious");
    EXPECT_EQ(entries(m_root.path()), QStringList(QStringLiteral("folder")));
}

TEST_F(SaveToFolderTest, FailsWhereAParentIsAFile) {
    makeFile("parent", "precious");
    EXPECT_EQ(failureOf(path("parent/folder")), QStringLiteral("folder: Not a directory"));
    EXPECT_EQ(contents(path("parent")), "precious");
    EXPECT_EQ(entries(m_root.path()), QStringList(QStringLiteral("parent")));
}

TEST_F(SaveToFolderTest, FailsWhereNoFolderCanBeCreated) {
    EXPECT_EQ(failureOf(QStringLiteral("/proc/snapvane")),
              QStringLiteral("snapvane: No such file or directory"));
}

TEST_F(SaveToFolderTest, FailsWhereTheFolderTakesNoFile) {
    const QString failure = failureOf(QStringLiteral("/proc/self/task"));
    // Root is told otherwise than others are.
    EXPECT_THAT(failure,
                ::testing::AnyOf(pictureName + QStringLiteral(": No such file or directory"),
                                 pictureName + QStringLiteral(": Permission denied")));
}

TEST_F(SaveToFolderTest, FailsWhereTheUserMayNotWrite) {
    QDir(m_root.path()).mkpath(QStringLiteral("closed"));
    ASSERT_EQ(chmod(QFile::encodeName(m_root.path()).constData(), 0755), 0);
    ASSERT_EQ(chmod(QFile::encodeName(path("closed")).constData(), 0555), 0);
    QString intoFolder;
    QString intoNewFolder;
    {
        const testing::OrdinaryUser user;
        intoFolder = failureOf(path("closed"));
        intoNewFolder = failureOf(path("closed/inner"));
    }
    EXPECT_EQ(intoFolder, pictureName + QStringLiteral(": Permission denied"));
    EXPECT_EQ(intoNewFolder, QStringLiteral("inner: Permission denied"));
    EXPECT_EQ(entries(path("closed")), QStringList());
}

TEST_F(SaveToFolderTest, TakesALinkToAFolder) {
    QDir(m_root.path()).mkpath(QStringLiteral("real"));
    ASSERT_TRUE(QFile::link(path("real"), path("link")));
    EXPECT_EQ(save(path("link"), captureOf("picture")), QStringLiteral("Saved to ") + pictureName);
    EXPECT_EQ(contents(inFolder(path("real"), pictureName)), "picture");
}

TEST_F(SaveToFolderTest, FailsWhereALinkLeadsNowhere) {
    ASSERT_TRUE(QFile::link(path("gone"), path("link")));
    EXPECT_NE(failureOf(path("link")), QString());
    EXPECT_FALSE(QFile::exists(path("gone")));
}

TEST_F(SaveToFolderTest, FailsWhereAFolderHasTheFilesName) {
    ASSERT_TRUE(QDir(m_root.path()).mkpath(pictureName + QStringLiteral("/inner")));
    EXPECT_EQ(failureOf(m_root.path()), pictureName + QStringLiteral(": Is a directory"));
    EXPECT_EQ(entries(m_root.path()), QStringList(pictureName));
}

TEST_F(SaveToFolderTest, LeavesNothingBehindWhenTheDiskIsFull) {
    makeFile(pictureName.toUtf8().constData(), "the old picture");
    const QByteArray png(1'000'000, 'x');
    QString failure;
    {
        const testing::FileSizeLimit limit(100'000);
        failure = failureOf(m_root.path(), png);
    }
    EXPECT_EQ(failure, pictureName + QStringLiteral(": File too large"));
    EXPECT_EQ(entries(m_root.path()), QStringList(pictureName));
    EXPECT_EQ(contents(inFolder(m_root.path(), pictureName)), "the old picture");
}

TEST_F(SaveToFolderTest, LeavesNothingBehindWhenTheEndOfTheFileDoesNotFit) {
    // So little that it is only written when the file is closed.
    QString failure;
    {
        const testing::FileSizeLimit limit(10);
        failure = failureOf(m_root.path(), QByteArray(2000, 'x'));
    }
    EXPECT_EQ(failure, pictureName + QStringLiteral(": File too large"));
    EXPECT_EQ(entries(m_root.path()), QStringList());
}

TEST_F(SaveToFolderTest, WritesOnTheThreadPool) {
    QThreadPool& pool = backgroundPool();
    const int threads = pool.maxThreadCount();
    pool.setMaxThreadCount(1);
    QSemaphore mayGoOn;
    pool.start([&mayGoOn] { mayGoOn.acquire(); });

    SaveToFolderCaptureAction action([this] {
        EXPECT_NE(QThread::currentThread(), qApp->thread());
        return m_root.path();
    });
    auto saving = action.perform(captureOf("picture"));
    for (int i = 0; i < 20; ++i) {
        QCoreApplication::processEvents();
        QThread::msleep(5);
    }
    EXPECT_FALSE(saving.isReady());
    EXPECT_EQ(entries(m_root.path()), QStringList());

    mayGoOn.release();
    EXPECT_EQ(await(std::move(saving)), QStringLiteral("Saved to ") + pictureName);
    EXPECT_EQ(entries(m_root.path()), QStringList(pictureName));
    pool.setMaxThreadCount(threads);
}

} // namespace snapvane
