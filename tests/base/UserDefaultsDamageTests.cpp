#include "base/UserDefaults.h"

#include "PreferencesFile.h"
#include "support/QtPrinting.h"

#include <gtest/gtest.h>

namespace snapvane {

namespace {

const QString dim = QStringLiteral("selectionDimAmount");
const QString ask = QStringLiteral("askMeAfterCapture");

struct Damage {
    const char* name;
    QByteArray contents;
};

void PrintTo(const Damage& damage, std::ostream* stream) {
    *stream << damage.name;
}

/// Each of them has a readable value before the damage.
const Damage damages[] = {
    {"section_without_end", "[General]\nselectionDimAmount=0.25\n[Broken\nx=1\n"},
    {"line_without_value", "[General]\nselectionDimAmount=0.25\nthis line means nothing\n"},
    {"noise", QByteArray("[General]\nselectionDimAmount=0.25\n") +
                  QByteArray::fromHex("00ff10e28a03fe0a7f454c46020101")},
};

class DamagedPreferences : public ::testing::TestWithParam<Damage> {
protected:
    void SetUp() override { m_file.write(GetParam().contents); }

    PreferencesFile m_file;
};

} // namespace

TEST_P(DamagedPreferences, AreKeptAside) {
    const UserDefaults defaults(m_file.path());
    EXPECT_EQ(PreferencesFile::contents(m_file.backupPath()), GetParam().contents);
    EXPECT_EQ(m_file.contents(), GetParam().contents);
}

TEST_P(DamagedPreferences, KeepWhatCanBeRead) {
    const UserDefaults defaults(m_file.path());
    EXPECT_EQ(defaults.number(dim), 0.25);
}

TEST_P(DamagedPreferences, CanBeWrittenAgain) {
    {
        UserDefaults defaults(m_file.path());
        defaults.set(ask, true);
        EXPECT_TRUE(defaults.boolean(ask));
    }
    const UserDefaults again(m_file.path());
    EXPECT_TRUE(again.boolean(ask));
    EXPECT_EQ(again.number(dim), 0.25);
    EXPECT_EQ(PreferencesFile::contents(m_file.backupPath()), GetParam().contents);
}

TEST_P(DamagedPreferences, AreKeptAsideOnce) {
    for (int start = 0; start < 3; ++start) {
        const UserDefaults defaults(m_file.path());
    }
    EXPECT_EQ(m_file.files(),
              (QStringList{QStringLiteral("Snapvane.conf"), QStringLiteral("Snapvane.conf.bak")}));
}

TEST_P(DamagedPreferences, LeaveAnEarlierBackupAlone) {
    m_file.write(m_file.backupPath(), "from another day");
    const UserDefaults defaults(m_file.path());
    EXPECT_EQ(PreferencesFile::contents(m_file.backupPath()), "from another day");
    EXPECT_EQ(PreferencesFile::contents(m_file.backupPath() + QStringLiteral(".1")),
              GetParam().contents);
}

INSTANTIATE_TEST_SUITE_P(Each, DamagedPreferences, ::testing::ValuesIn(damages),
                         [](const auto& damage) { return std::string(damage.param.name); });

TEST(UserDefaultsFile, SoundOnesAreNotKeptAside) {
    for (const char* contents : {"", "\n", "[General]\n", "; a remark\n[General]\nx=1\n",
                                 "[General]\nx=1\n\n[Other]\ny=2\n", "x=1\n"}) {
        SCOPED_TRACE(contents);
        const PreferencesFile file;
        file.write(contents);
        UserDefaults defaults(file.path());
        defaults.set(ask, true);
        EXPECT_EQ(file.files(), QStringList{QStringLiteral("Snapvane.conf")});
    }
}

TEST(UserDefaultsFile, AFolderInItsPlaceIsSurvived) {
    const PreferencesFile file;
    QDir().mkpath(file.path());
    UserDefaults defaults(file.path());
    EXPECT_FALSE(defaults.contains(dim));
    defaults.set(dim, 0.5);
    EXPECT_EQ(defaults.number(dim), 0.5);
    EXPECT_TRUE(QDir(file.path()).exists());
}

TEST(UserDefaultsFile, AFileInItsFoldersPlaceIsSurvived) {
    const PreferencesFile file;
    QFile obstacle(file.folder());
    ASSERT_TRUE(obstacle.open(QIODevice::WriteOnly));
    obstacle.close();
    UserDefaults defaults(file.path());
    defaults.set(dim, 0.5);
    EXPECT_EQ(defaults.number(dim), 0.5);
    EXPECT_TRUE(QFileInfo(file.folder()).isFile());
}

TEST(UserDefaultsFile, AnEndlessOrDanglingLinkIsSurvived) {
    const PreferencesFile file;
    QDir().mkpath(file.folder());
    ASSERT_TRUE(QFile::link(file.path(), file.path()));
    UserDefaults defaults(file.path());
    EXPECT_FALSE(defaults.boolean(ask));
    defaults.set(ask, true);
    EXPECT_TRUE(defaults.boolean(ask));
}

} // namespace snapvane
