#include "selection/AppPreferences.h"

#include "base/UserDefaults.h"

#include <QFile>
#include <QTemporaryDir>

#include <gmock/gmock.h>

#include <limits>

namespace snapvane {

namespace {

using ::testing::Combine;
using ::testing::HasSubstr;
using ::testing::Not;
using ::testing::Values;

/// A preferences file that a test writes by hand and reads back as it stands on the disk.
class PreferencesFile {
public:
    QString path() const { return m_folder.filePath(QStringLiteral("Snapvane.conf")); }
    bool exists() const { return QFile::exists(path()); }
    void write(const std::string& lines) const {
        QFile file(path());
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(QByteArray::fromStdString("[General]\n" + lines));
    }
    std::string contents() const {
        QFile file(path());
        return file.open(QIODevice::ReadOnly) ? file.readAll().toStdString() : std::string();
    }

private:
    QTemporaryDir m_folder;
};

/// The preferences as the program finds them when it starts with this file.
struct Session {
    explicit Session(const PreferencesFile& file) : defaults(file.path()), preferences(defaults) {}

    UserDefaults defaults;
    AppPreferences preferences;
};

TEST(AppPreferences, FreshInstallation) {
    const PreferencesFile file;
    const Session session(file);
    EXPECT_FALSE(session.preferences.showCrosshairLinesWhileCapturing());
    EXPECT_TRUE(session.preferences.showSelectionMagnifier());
    EXPECT_EQ(session.preferences.selectionDimAmount(), 0.18);
    EXPECT_EQ(session.preferences.selectionDimPercent(), 18);
}

TEST(AppPreferences, ReadingWritesNothing) {
    const PreferencesFile fresh;
    { const Session session(fresh); }
    EXPECT_FALSE(fresh.exists());

    const PreferencesFile old;
    old.write("showScreenCenter=true\n");
    const std::string before = old.contents();
    { const Session session(old); }
    EXPECT_EQ(old.contents(), before);
}

enum class Stored { Absent, Off, On };

void PrintTo(Stored stored, std::ostream* stream) {
    *stream << (stored == Stored::Absent ? "absent" : stored == Stored::On ? "on" : "off");
}

/// The three names of the crosshair setting, the newest first.
class CrosshairLinesFallBack : public ::testing::TestWithParam<std::tuple<Stored, Stored, Stored>> {
};

TEST_P(CrosshairLinesFallBack, NewestNameThatIsThereCounts) {
    const auto [current, older, oldest] = GetParam();
    std::string lines;
    bool expected = false;
    const auto add = [&](Stored stored, const std::string& key) {
        if (stored != Stored::Absent) {
            lines.insert(0, key + (stored == Stored::On ? "=true\n" : "=false\n"));
            expected = stored == Stored::On;
        }
    };
    add(oldest, "showScreenCenter");
    add(older, "showCenterLinesWhileCapturing");
    add(current, "showCrosshairLinesWhileCapturing");
    const PreferencesFile file;
    file.write(lines);
    EXPECT_EQ(Session(file).preferences.showCrosshairLinesWhileCapturing(), expected) << lines;
}

const auto storedStates = Values(Stored::Absent, Stored::Off, Stored::On);
INSTANTIATE_TEST_SUITE_P(AllCombinations, CrosshairLinesFallBack,
                         Combine(storedStates, storedStates, storedStates));

TEST(AppPreferences, AnyTypeUnderANewerNameHidesTheOlderOnes) {
    const PreferencesFile file;
    file.write("showCrosshairLinesWhileCapturing=some text\nshowScreenCenter=true\n");
    EXPECT_FALSE(Session(file).preferences.showCrosshairLinesWhileCapturing());
}

TEST(AppPreferences, StoredValuesAreUsed) {
    const PreferencesFile file;
    file.write("showSelectionMagnifier=false\nselectionDimAmount=0.3\n");
    const Session session(file);
    EXPECT_FALSE(session.preferences.showSelectionMagnifier());
    EXPECT_EQ(session.preferences.selectionDimAmount(), 0.3);
}

TEST(AppPreferences, StoredOnIsOn) {
    const PreferencesFile file;
    file.write("showSelectionMagnifier=true\nshowCrosshairLinesWhileCapturing=1\n");
    const Session session(file);
    EXPECT_TRUE(session.preferences.showSelectionMagnifier());
    EXPECT_TRUE(session.preferences.showCrosshairLinesWhileCapturing());
}

struct PercentCase {
    const char* stored;
    std::int64_t percent;

    friend void PrintTo(const PercentCase& example, std::ostream* stream) {
        *stream << example.stored;
    }
};

class DimPercent : public ::testing::TestWithParam<PercentCase> {};

TEST_P(DimPercent, RoundsHalvesAwayFromZero) {
    const PreferencesFile file;
    file.write(std::string("selectionDimAmount=") + GetParam().stored + "\n");
    EXPECT_EQ(Session(file).preferences.selectionDimPercent(), GetParam().percent)
        << GetParam().stored;
}

INSTANTIATE_TEST_SUITE_P(Table, DimPercent,
                         Values(PercentCase{"0.125", 13}, PercentCase{"0.45", 45},
                                PercentCase{"0.08", 8}, PercentCase{"0.005", 1},
                                PercentCase{"0.18", 18}, PercentCase{"0", 0}, PercentCase{"1", 100},
                                PercentCase{"-0.125", -13}, PercentCase{"7.5", 750}));

TEST(AppPreferences, AmountsOutOfRangeAreKept) {
    const PreferencesFile file;
    for (const double amount : {-0.5, 0.0, 0.9, 42.0}) {
        {
            Session session(file);
            session.preferences.setSelectionDimAmount(amount);
            EXPECT_EQ(session.preferences.selectionDimAmount(), amount);
        }
        EXPECT_EQ(Session(file).preferences.selectionDimAmount(), amount);
    }
}

TEST(AppPreferencesDeathTest, PercentOfWhatIsNoNumberIsAProgramError) {
    const PreferencesFile file;
    Session session(file);
    session.preferences.setSelectionDimAmount(std::numeric_limits<double>::quiet_NaN());
    EXPECT_DEATH((void)session.preferences.selectionDimPercent(), "Program error");
    session.preferences.setSelectionDimAmount(std::numeric_limits<double>::infinity());
    EXPECT_DEATH((void)session.preferences.selectionDimPercent(), "Program error");
    session.preferences.setSelectionDimAmount(1e17);
    EXPECT_DEATH((void)session.preferences.selectionDimPercent(), "Program error");
}

TEST(AppPreferences, EachChangeReachesTheFileAtOnce) {
    const PreferencesFile file;
    Session session(file);
    session.preferences.setShowCrosshairLinesWhileCapturing(true);
    EXPECT_THAT(file.contents(), HasSubstr("showCrosshairLinesWhileCapturing=true"));
    session.preferences.setShowSelectionMagnifier(false);
    EXPECT_THAT(file.contents(), HasSubstr("showSelectionMagnifier=false"));
    session.preferences.setSelectionDimAmount(0.25);
    EXPECT_THAT(file.contents(), HasSubstr("selectionDimAmount=0.25"));

    const Session next(file);
    EXPECT_TRUE(next.preferences.showCrosshairLinesWhileCapturing());
    EXPECT_FALSE(next.preferences.showSelectionMagnifier());
    EXPECT_EQ(next.preferences.selectionDimAmount(), 0.25);
}

TEST(AppPreferences, OlderNamesAreNeverWritten) {
    const PreferencesFile file;
    file.write("showCenterLinesWhileCapturing=false\nshowScreenCenter=false\n");
    Session(file).preferences.setShowCrosshairLinesWhileCapturing(true);
    EXPECT_THAT(file.contents(), HasSubstr("showCrosshairLinesWhileCapturing=true"));
    EXPECT_THAT(file.contents(), HasSubstr("showCenterLinesWhileCapturing=false"));
    EXPECT_THAT(file.contents(), HasSubstr("showScreenCenter=false"));
    EXPECT_TRUE(Session(file).preferences.showCrosshairLinesWhileCapturing());

    const PreferencesFile fresh;
    Session(fresh).preferences.setShowCrosshairLinesWhileCapturing(true);
    EXPECT_THAT(fresh.contents(), Not(HasSubstr("Center")));
}

TEST(AppPreferences, TheSameValueIsWrittenAgain) {
    const PreferencesFile file;
    Session session(file);
    session.preferences.setShowSelectionMagnifier(true);
    EXPECT_THAT(file.contents(), HasSubstr("showSelectionMagnifier=true"));
    session.preferences.setSelectionDimAmount(0.18);
    EXPECT_THAT(file.contents(), HasSubstr("selectionDimAmount=0.18"));
}

TEST(AppPreferences, ChangesFromElsewhereAreNotNoticed) {
    const PreferencesFile file;
    Session session(file);
    session.defaults.set(QStringLiteral("showSelectionMagnifier"), false);
    session.defaults.set(QStringLiteral("selectionDimAmount"), 0.4);
    EXPECT_TRUE(session.preferences.showSelectionMagnifier());
    EXPECT_EQ(session.preferences.selectionDimAmount(), 0.18);
}

/// What an observer sees when it is told of a change.
struct Sighting {
    bool lines;
    bool magnifier;
    double dim;
    std::string file;
};

TEST(AppPreferences, ChangesAreAnnouncedBeforeTheyHappen) {
    const PreferencesFile file;
    Session session(file);
    AppPreferences& preferences = session.preferences;
    std::vector<Sighting> seen;
    QObject::connect(&preferences, &AppPreferences::objectWillChange, &preferences, [&] {
        seen.push_back({preferences.showCrosshairLinesWhileCapturing(),
                        preferences.showSelectionMagnifier(), preferences.selectionDimAmount(),
                        file.contents()});
    });
    preferences.setShowCrosshairLinesWhileCapturing(true);
    preferences.setShowSelectionMagnifier(false);
    preferences.setSelectionDimAmount(0.4);
    ASSERT_EQ(seen.size(), 3U);
    EXPECT_FALSE(seen[0].lines);
    EXPECT_THAT(seen[0].file, Not(HasSubstr("showCrosshairLinesWhileCapturing")));
    EXPECT_TRUE(seen[1].magnifier);
    EXPECT_THAT(seen[1].file, Not(HasSubstr("showSelectionMagnifier")));
    EXPECT_EQ(seen[2].dim, 0.18);
    EXPECT_THAT(seen[2].file, Not(HasSubstr("selectionDimAmount")));
}

TEST(AppPreferences, TheSameValueIsAnnouncedAgain) {
    const PreferencesFile file;
    Session session(file);
    AppPreferences& preferences = session.preferences;
    int announced = 0;
    QObject::connect(&preferences, &AppPreferences::objectWillChange, &preferences,
                     [&announced] { ++announced; });
    preferences.setShowCrosshairLinesWhileCapturing(false);
    preferences.setShowSelectionMagnifier(true);
    preferences.setSelectionDimAmount(0.18);
    EXPECT_EQ(announced, 3);
}

} // namespace

} // namespace snapvane
