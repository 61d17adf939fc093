#include "base/AtomicFile.h"

#include "support/QtPrinting.h"

#include <gtest/gtest.h>

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

namespace snapvane {

namespace {

const QRegularExpression shotNames(QStringLiteral("shot [0-9]+\\.png"));

/// A file that somebody is writing.
class LockedFile {
public:
    explicit LockedFile(const QString& path)
        : m_file(::open(QFile::encodeName(path).constData(), O_WRONLY | O_CLOEXEC)),
          m_locked(::flock(m_file, LOCK_EX | LOCK_NB) == 0) {}
    ~LockedFile() { ::close(m_file); }
    LockedFile(const LockedFile&) = delete;
    LockedFile& operator=(const LockedFile&) = delete;

    bool isLocked() const { return m_locked; }

private:
    int m_file;
    bool m_locked;
};

class AtomicFileTest : public ::testing::Test {
protected:
    QString path(const QString& name) const { return m_folder.filePath(name); }
    void make(const QString& name, const QByteArray& bytes = "bytes") const {
        QFile file(path(name));
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(bytes);
    }
    QByteArray contents(const QString& name) const {
        QFile file(path(name));
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("unreadable");
    }
    QStringList entries() const {
        return QDir(m_folder.path())
            .entryList(QDir::AllEntries | QDir::System | QDir::Hidden | QDir::NoDotAndDotDot,
                       QDir::Name);
    }
    void clear() const { removeUnfinishedFiles(m_folder.path(), shotNames); }

    QTemporaryDir m_folder;
};

} // namespace

TEST_F(AtomicFileTest, IsWrittenWhole) {
    for (const QByteArray& bytes :
         {QByteArray("bytes"), QByteArray(), QByteArray(3'000'000, 'x'), QByteArray("\0\n\0", 3)}) {
        EXPECT_EQ(writeFileAtomically(path(QStringLiteral("file")), bytes), std::error_code());
        EXPECT_EQ(contents(QStringLiteral("file")), bytes);
        EXPECT_EQ(entries(), QStringList(QStringLiteral("file")));
    }
}

TEST_F(AtomicFileTest, TakesThePlaceOfALinkAndNotOfItsTarget) {
    make(QStringLiteral("target"), "precious");
    ASSERT_TRUE(QFile::link(path(QStringLiteral("target")), path(QStringLiteral("file"))));
    EXPECT_EQ(writeFileAtomically(path(QStringLiteral("file")), "new"), std::error_code());
    EXPECT_EQ(contents(QStringLiteral("target")), "precious");
    EXPECT_EQ(contents(QStringLiteral("file")), "new");
    EXPECT_FALSE(QFileInfo(path(QStringLiteral("file"))).isSymLink());
}

TEST_F(AtomicFileTest, IsNotWrittenWhereThereIsNoFolder) {
    EXPECT_EQ(writeFileAtomically(path(QStringLiteral("gone/file")), "bytes"),
              std::errc::no_such_file_or_directory);
    EXPECT_EQ(entries(), QStringList());
}

TEST_F(AtomicFileTest, IsNotWrittenUnderTheNameOfAFolder) {
    ASSERT_TRUE(QDir(m_folder.path()).mkdir(QStringLiteral("file")));
    EXPECT_EQ(writeFileAtomically(path(QStringLiteral("file")), "bytes"),
              std::errc::is_a_directory);
    EXPECT_EQ(entries(), QStringList(QStringLiteral("file")));
}

TEST_F(AtomicFileTest, LeftUnfinishedAreRemoved) {
    make(QStringLiteral(".shot 1.png.0123abcd.part"));
    make(QStringLiteral(".shot 22.png.ffffffff.part"), {});
    clear();
    EXPECT_EQ(entries(), QStringList());
}

namespace {

/// Names that no unfinished file of ours has.
const char* const foreignNames[] = {
    "shot 1.png",
    ".shot 1.png",
    ".shot 1.png.part",
    "shot 1.png.0123abcd.part",
    ".shot 1.png.0123abc.part",
    ".shot 1.png.0123abcde.part",
    ".shot 1.png.0123ABCD.part",
    ".shot 1.png.0123abcg.part",
    ".shot 1.png.0123abcd.part~",
    ".shot 1.png.0123abcd.partial",
    ".shot 1.png.0123abcd.PART",
    ".shot 1.png.0123abcd.png",
    ".shot 1.png-0123abcd.part",
    ".shot x.png.0123abcd.part",
    ".my shot 1.png.0123abcd.part",
    ".shot 1.png.bak.0123abcd.part",
    ".shot 1.png.0123abcd.part.0123abcd.part",
    ".other.0123abcd.part",
    "..0123abcd.part",
    ".shot 1.png\n.0123abcd.part",
    ".shot 1.png.0123abcd.part\n",
};

class ForeignFile : public AtomicFileTest, public ::testing::WithParamInterface<const char*> {};

} // namespace

TEST_P(ForeignFile, Stays) {
    const QString name = QString::fromLatin1(GetParam());
    make(name);
    clear();
    EXPECT_EQ(entries(), QStringList(name));
}

INSTANTIATE_TEST_SUITE_P(Names, ForeignFile, ::testing::ValuesIn(foreignNames));

TEST_F(AtomicFileTest, BeingWrittenStaysUntilItsWriterIsGone) {
    const QString name = QStringLiteral(".shot 1.png.0123abcd.part");
    make(name);
    {
        const LockedFile writer(path(name));
        ASSERT_TRUE(writer.isLocked());
        clear();
        EXPECT_EQ(entries(), QStringList(name));
    }
    clear();
    EXPECT_EQ(entries(), QStringList());
}

TEST_F(AtomicFileTest, OfSuchANameThatAreNoneStay) {
    const QString folder = QStringLiteral(".shot 1.png.00000001.part");
    const QString pipe = QStringLiteral(".shot 1.png.00000002.part");
    const QString link = QStringLiteral(".shot 1.png.00000003.part");
    const QString danglingLink = QStringLiteral(".shot 1.png.00000004.part");
    const QString target = QStringLiteral("target");
    make(target);
    ASSERT_TRUE(QDir(m_folder.path()).mkdir(folder));
    ASSERT_EQ(::mkfifo(QFile::encodeName(path(pipe)).constData(), 0600), 0);
    ASSERT_TRUE(QFile::link(path(target), path(link)));
    ASSERT_EQ(::symlink("nowhere", QFile::encodeName(path(danglingLink)).constData()), 0);
    clear();
    EXPECT_EQ(entries(), QStringList({folder, pipe, link, danglingLink, target}));
}

TEST_F(AtomicFileTest, InFoldersBelowStay) {
    const QString inner = QStringLiteral("inner/.shot 1.png.0123abcd.part");
    ASSERT_TRUE(QDir(m_folder.path()).mkdir(QStringLiteral("inner")));
    make(inner);
    clear();
    EXPECT_EQ(contents(inner), "bytes");
}

TEST_F(AtomicFileTest, AreRemovedThroughALinkToTheFolder) {
    make(QStringLiteral(".shot 1.png.0123abcd.part"));
    const QTemporaryDir elsewhere;
    const QString link = elsewhere.filePath(QStringLiteral("link"));
    ASSERT_TRUE(QFile::link(m_folder.path(), link));
    removeUnfinishedFiles(link, shotNames);
    EXPECT_EQ(entries(), QStringList());
}

TEST_F(AtomicFileTest, AreNotLookedForWhereThereIsNoFolder) {
    make(QStringLiteral("file"));
    removeUnfinishedFiles(path(QStringLiteral("gone")), shotNames);
    removeUnfinishedFiles(path(QStringLiteral("file")), shotNames);
    EXPECT_EQ(entries(), QStringList(QStringLiteral("file")));
}

TEST_F(AtomicFileTest, AreFoundByThePatternsOwnRules) {
    make(QStringLiteral(".SHOT 1.PNG.0123abcd.part"));
    removeUnfinishedFiles(
        m_folder.path(),
        QRegularExpression(shotNames.pattern(), QRegularExpression::CaseInsensitiveOption));
    EXPECT_EQ(entries(), QStringList());
}

TEST_F(AtomicFileTest, AreFoundByEitherHalfOfAPattern) {
    make(QStringLiteral(".shot 1.png.0123abcd.part"));
    make(QStringLiteral(".shot 1.png.bak.0123abcd.part"));
    removeUnfinishedFiles(m_folder.path(), QRegularExpression(QStringLiteral("other|shot 1.png")));
    EXPECT_EQ(entries(), QStringList(QStringLiteral(".shot 1.png.bak.0123abcd.part")));
}

} // namespace snapvane
