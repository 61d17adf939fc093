#include "actions/SaveToFolderCaptureAction.h"

#include "actions/FileError.h"
#include "base/Await.h"
#include "support/QtPrinting.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QDir>
#include <QFile>
#include <QSemaphore>
#include <QTemporaryDir>
#include <QThreadPool>

#include <csignal>
#include <sys/resource.h>
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
        SaveToFolderCaptureAction action(folder);
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

/// Files cannot grow beyond a size while it lives, as on a full disk.
class FileSizeLimit {
public:
    explicit FileSizeLimit(rlim_t bytes) : m_signalBefore(std::signal(SIGXFSZ, SIG_IGN)) {
        getrlimit(RLIMIT_FSIZE, &m_before);
        rlimit limit = m_before;
        limit.rlim_cur = bytes;
        setrlimit(RLIMIT_FSIZE, &limit);
    }
    ~FileSizeLimit() {
        setrlimit(RLIMIT_FSIZE, &m_before);
        std::signal(SIGXFSZ, m_signalBefore);
    }
    FileSizeLimit(const FileSizeLimit&) = delete;
    FileSizeLimit& operator=(const FileSizeLimit&) = delete;

private:
    rlimit m_before = {};
    void (*m_signalBefore)(int);
};

} // namespace

TEST_F(SaveToFolderTest, KnowsItsIdentifierAndFolder) {
    const SaveToFolderCaptureAction action(QStringLiteral("/somewhere"));
    EXPECT_EQ(action.id(), QStringLiteral("save-to-folder"));
    EXPECT_EQ(action.folderPath(), QStringLiteral("/somewhere"));
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
        const FileSizeLimit limit(100'000);
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
        const FileSizeLimit limit(10);
        failure = failureOf(m_root.path(), QByteArray(2000, 'x'));
    }
    EXPECT_EQ(failure, pictureName + QStringLiteral(": File too large"));
    EXPECT_EQ(entries(m_root.path()), QStringList());
}

TEST_F(SaveToFolderTest, WritesOnTheThreadPool) {
    QThreadPool& pool = *QThreadPool::globalInstance();
    const int threads = pool.maxThreadCount();
    pool.setMaxThreadCount(1);
    QSemaphore mayGoOn;
    pool.start([&mayGoOn] { mayGoOn.acquire(); });

    SaveToFolderCaptureAction action(m_root.path());
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
