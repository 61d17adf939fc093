#include "actions/CapturePreferences.h"

#include "support/QtPrinting.h"

#include <gtest/gtest.h>

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

namespace snapvane {

namespace {

/// A home folder for one test.
class CapturePreferencesTest : public ::testing::Test {
public:
    CapturePreferencesTest() { qputenv("HOME", QFile::encodeName(m_home.path())); }
    ~CapturePreferencesTest() override { qputenv("HOME", m_homeBefore); }

protected:
    QString inHome(const char* path) const { return m_home.filePath(QString::fromUtf8(path)); }

    void writeUserFolders(const QByteArray& lines) const {
        QDir(m_home.path()).mkpath(QStringLiteral(".config"));
        QFile file(inHome(".config/user-dirs.dirs"));
        file.open(QIODevice::WriteOnly);
        file.write(lines);
    }

private:
    QByteArray m_homeBefore = qgetenv("HOME");
    QTemporaryDir m_home;
};

} // namespace

TEST_F(CapturePreferencesTest, SaveIntoPicturesUnlessToldOtherwise) {
    EXPECT_EQ(CapturePreferences::defaultSaveFolderPath(), inHome("Pictures/Snapvane"));
    EXPECT_FALSE(QFile::exists(inHome("Pictures")));
}

TEST_F(CapturePreferencesTest, FollowTheUsersOwnPicturesFolder) {
    writeUserFolders("XDG_DESKTOP_DIR=\"$HOME/Schreibtisch\"\n"
                     "XDG_PICTURES_DIR=\"$HOME/Meine Bilder\"\n");
    EXPECT_EQ(CapturePreferences::defaultSaveFolderPath(), inHome("Meine Bilder/Snapvane"));
    writeUserFolders("XDG_PICTURES_DIR=\"/srv/pictures\"\n");
    EXPECT_EQ(CapturePreferences::defaultSaveFolderPath(),
              QStringLiteral("/srv/pictures/Snapvane"));
}

TEST_F(CapturePreferencesTest, SaveIntoHomeWhenThereIsNoPicturesFolder) {
    for (const char* disabled : {"XDG_PICTURES_DIR=\"$HOME/\"\n", "XDG_PICTURES_DIR=\"$HOME\"\n"}) {
        SCOPED_TRACE(disabled);
        writeUserFolders(disabled);
        EXPECT_EQ(CapturePreferences::defaultSaveFolderPath(), inHome("Snapvane"));
    }
}

TEST_F(CapturePreferencesTest, CreateTheResolvedFolderWithItsParents) {
    EXPECT_EQ(CapturePreferences::resolvedSaveFolderPath(), inHome("Pictures/Snapvane"));
    EXPECT_TRUE(QDir(inHome("Pictures/Snapvane")).exists());
}

TEST_F(CapturePreferencesTest, ResolveTheFolderAlsoWhereItCannotBeCreated) {
    QFile obstacle(inHome("Pictures"));
    ASSERT_TRUE(obstacle.open(QIODevice::WriteOnly));
    EXPECT_EQ(CapturePreferences::resolvedSaveFolderPath(), inHome("Pictures/Snapvane"));
    EXPECT_FALSE(QFile::exists(inHome("Pictures/Snapvane")));
}

} // namespace snapvane
