// Where captures are saved.

#include "CapturePreferencesSession.h"
#include "HomeFolder.h"
#include "OrdinaryUser.h"
#include "support/QtPrinting.h"

#include <gtest/gtest.h>

#include <sys/stat.h>

namespace snapvane {

namespace {

using testing::CapturePreferencesSession;

class SaveFolderTest : public ::testing::Test {
protected:
    void writeUserFolders(const QByteArray& lines) const {
        m_home.makeFolder(".config");
        m_home.makeFile(".config/user-dirs.dirs", lines);
    }
    std::optional<QString> storedFolder() const {
        return m_session.defaults.string(QStringLiteral("saveFolderSecurityBookmark"));
    }
    std::optional<QString> storedLabel() const {
        return m_session.defaults.string(QStringLiteral("saveFolderDisplayPath"));
    }
    /// Chooses a folder that is there.
    QString choose(const char* relative) {
        m_home.makeFolder(relative);
        QString path = m_home.path(relative);
        m_preferences.setSaveFolder(path);
        return path;
    }

    testing::HomeFolder m_home;
    QString m_defaultFolder = m_home.path("Pictures/Snapvane");
    PreferencesFile m_file;
    CapturePreferencesSession m_session{m_file};
    CapturePreferences& m_preferences = m_session.preferences;
};

} // namespace

TEST_F(SaveFolderTest, IsInPicturesUnlessToldOtherwise) {
    EXPECT_EQ(CapturePreferences::defaultSaveFolder(), m_defaultFolder);
    EXPECT_EQ(m_preferences.saveFolders().last(), m_defaultFolder);
    EXPECT_FALSE(QFile::exists(m_home.path("Pictures")));
}

TEST_F(SaveFolderTest, FollowsTheUsersOwnPicturesFolder) {
    writeUserFolders("XDG_DESKTOP_DIR=\"$HOME/Schreibtisch\"\n"
                     "XDG_PICTURES_DIR=\"$HOME/Meine Bilder\"\n");
    EXPECT_EQ(CapturePreferences::defaultSaveFolder(), m_home.path("Meine Bilder/Snapvane"));
    writeUserFolders("XDG_PICTURES_DIR=\"/srv/pictures\"\n");
    EXPECT_EQ(CapturePreferences::defaultSaveFolder(), QStringLiteral("/srv/pictures/Snapvane"));
}

TEST_F(SaveFolderTest, IsInHomeWhenThereIsNoPicturesFolder) {
    for (const char* disabled : {"XDG_PICTURES_DIR=\"$HOME/\"\n", "XDG_PICTURES_DIR=\"$HOME\"\n"}) {
        SCOPED_TRACE(disabled);
        writeUserFolders(disabled);
        EXPECT_EQ(CapturePreferences::defaultSaveFolder(), m_home.path("Snapvane"));
    }
}

TEST_F(SaveFolderTest, IsMadeWithItsParentsWhenItIsTheDefaultOne) {
    EXPECT_EQ(m_preferences.resolvedSaveFolder(), m_defaultFolder);
    EXPECT_TRUE(QDir(m_defaultFolder).exists());
    EXPECT_EQ(m_preferences.resolvedSaveFolder(), m_defaultFolder);
}

TEST_F(SaveFolderTest, IsGivenAlsoWhereItCannotBeMade) {
    m_home.makeFile("Pictures", "in the way");
    EXPECT_EQ(m_preferences.resolvedSaveFolder(), m_defaultFolder);
    EXPECT_EQ(m_home.contents("Pictures"), "in the way");
}

TEST_F(SaveFolderTest, IsGivenAlsoWhereTheUserMayNotMakeIt) {
    m_home.makeFolder("Pictures");
    ASSERT_EQ(chmod(QFile::encodeName(m_home.path()).constData(), 0755), 0);
    ASSERT_EQ(chmod(QFile::encodeName(m_home.path("Pictures")).constData(), 0555), 0);
    QString folder;
    {
        const testing::OrdinaryUser user;
        folder = m_preferences.resolvedSaveFolder();
    }
    EXPECT_EQ(folder, m_defaultFolder);
    EXPECT_FALSE(QFile::exists(m_defaultFolder));
}

TEST_F(SaveFolderTest, IsTheChosenOne) {
    const QString chosen = choose("chosen");
    EXPECT_EQ(m_preferences.resolvedSaveFolder(), chosen);
    EXPECT_EQ(m_preferences.saveFolders(), QStringList({chosen, m_defaultFolder}));
    EXPECT_EQ(m_preferences.saveFolderDisplayPath(), chosen);
    EXPECT_EQ(storedFolder(), chosen);
    EXPECT_EQ(storedLabel(), chosen);
    EXPECT_FALSE(QFile::exists(m_defaultFolder));
}

TEST_F(SaveFolderTest, IsRememberedWhateverItsNameIs) {
    for (const char* name : {"plain", "a, b", "semi;colon", "@Invalid()", "quo\"te", "per%20cent",
                             "back\\slash", "new\nline", "\u00e4 \u65e5\u672c", "  spaces  "}) {
        SCOPED_TRACE(name);
        const QString chosen = choose(name);
        const CapturePreferencesSession next(m_file);
        EXPECT_EQ(next.preferences.resolvedSaveFolder(), chosen);
        EXPECT_EQ(next.preferences.saveFolderDisplayPath(), chosen);
    }
}

TEST_F(SaveFolderTest, IsTheDefaultOneWhileTheChosenOneIsGone) {
    const QString chosen = choose("chosen");
    ASSERT_TRUE(QDir().rmdir(chosen));
    EXPECT_EQ(m_preferences.saveFolders().last(), m_defaultFolder);
    EXPECT_FALSE(QFile::exists(m_defaultFolder));
    EXPECT_EQ(m_preferences.resolvedSaveFolder(), m_defaultFolder);
    EXPECT_TRUE(QDir(m_defaultFolder).exists());
    EXPECT_FALSE(QFile::exists(chosen));
    EXPECT_EQ(m_preferences.saveFolderDisplayPath(), chosen);
    EXPECT_EQ(storedFolder(), chosen);
    EXPECT_EQ(storedLabel(), chosen);

    m_home.makeFolder("chosen");
    EXPECT_EQ(m_preferences.resolvedSaveFolder(), chosen);
}

TEST_F(SaveFolderTest, IsTheDefaultOneWhileAFileIsInTheChosenOnesPlace) {
    const QString chosen = choose("chosen");
    ASSERT_TRUE(QDir().rmdir(chosen));
    m_home.makeFile("chosen", "precious");
    EXPECT_EQ(m_preferences.resolvedSaveFolder(), m_defaultFolder);
    EXPECT_EQ(m_home.contents("chosen"), "precious");
    EXPECT_EQ(m_preferences.saveFolderDisplayPath(), chosen);
}

TEST_F(SaveFolderTest, StaysWhereItWasWhenTheChoiceIsNoFolder) {
    const QString chosen = choose("chosen");
    m_home.makeFile("file");
    for (const QString& path : {m_home.path("gone"), m_home.path("file"), QStringLiteral("chosen"),
                                QStringLiteral("."), QString()}) {
        SCOPED_TRACE(path.toStdString());
        m_preferences.setSaveFolder(path);
        EXPECT_EQ(m_preferences.resolvedSaveFolder(), chosen);
        EXPECT_EQ(storedFolder(), chosen);
        EXPECT_EQ(m_preferences.saveFolderDisplayPath(), path);
        EXPECT_EQ(storedLabel(), path);
    }
}

TEST_F(SaveFolderTest, IsNeverARelativeOne) {
    for (const char* path : {".", "..", "Pictures", ""}) {
        SCOPED_TRACE(path);
        m_session.defaults.set(QStringLiteral("saveFolderSecurityBookmark"),
                               QString::fromLatin1(path));
        EXPECT_EQ(m_preferences.resolvedSaveFolder(), m_defaultFolder);
    }
}

TEST_F(SaveFolderTest, MayBeALinkToAFolder) {
    m_home.makeFolder("real");
    const QString link = m_home.path("link");
    ASSERT_TRUE(QFile::link(m_home.path("real"), link));
    m_preferences.setSaveFolder(link);
    EXPECT_EQ(m_preferences.resolvedSaveFolder(), link);

    ASSERT_TRUE(QDir().rmdir(m_home.path("real")));
    EXPECT_EQ(m_preferences.resolvedSaveFolder(), m_defaultFolder);
}

TEST_F(SaveFolderTest, MayBeOneThatTakesNoFiles) {
    const QString chosen = choose("chosen");
    ASSERT_EQ(chmod(QFile::encodeName(m_home.path()).constData(), 0755), 0);
    ASSERT_EQ(chmod(QFile::encodeName(chosen).constData(), 0555), 0);
    QString folder;
    {
        const testing::OrdinaryUser user;
        folder = m_preferences.resolvedSaveFolder();
    }
    EXPECT_EQ(folder, chosen);
    EXPECT_FALSE(QFile::exists(m_defaultFolder));
}

} // namespace snapvane
