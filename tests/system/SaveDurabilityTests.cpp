// Saved pictures are whole whatever happens, and what a killed program left is cleared away.

#include "AfterCaptureSuite.h"
#include "PngFile.h"
#include "ScreenGrab.h"
#include "TestClient.h"
#include "Wait.h"

#include <QDir>
#include <QFileInfo>

#include <fcntl.h>
#include <random>
#include <sys/file.h>
#include <sys/stat.h>
#include <thread>
#include <unistd.h>

using namespace Qt::StringLiterals;

namespace snapvane::testing {

namespace {

using Clock = std::chrono::steady_clock;

constexpr QRect noisyRect(200, 200, 800, 600);
constexpr char killCount[] = "SNAPVANE_TEST_KILLS";

class SaveDurability : public AfterCaptureSuite {
protected:
    static void SetUpTestSuite() {
        startDesktop();
        TestClient::Options options;
        options.mode = u"noise"_s;
        options.rect = noisyRect;
        options.overrideRedirect = true;
        s_noise = std::make_unique<TestClient>(desktop(), options);
    }

    static void TearDownTestSuite() {
        s_noise.reset();
        AfterCaptureSuite::TearDownTestSuite();
    }

    /// Whole pictures under the names that captures of the next seconds take, to be replaced.
    void occupyComingNames() {
        QImage picture(8, 8, QImage::Format_RGB32);
        picture.fill(Qt::red);
        const QDateTime now = QDateTime::currentDateTime();
        QDir().mkpath(agent().pictureFolder());
        for (int seconds = 0; seconds < 5; ++seconds) {
            const QString time = now.addSecs(seconds).toString(u"yyyy-MM-dd HH.mm.ss"_s);
            picture.save(agent().pictureFolder() + u"/Snapvane %1.png"_s.arg(time));
        }
    }

    void startSaving() { startAgent(actionsPreference("saveToFolder")); }

private:
    static std::unique_ptr<TestClient> s_noise;
};

std::unique_ptr<TestClient> SaveDurability::s_noise;

TEST_F(SaveDurability, TwoPicturesInOneSecondLeaveTheSecondOne) {
    startSaving();
    constexpr QRect first(100, 100, 60, 50);
    constexpr QRect second(1100, 300, 90, 70);
    const QImage expected = grabSettledScreen(desktop().connection(), second);
    // Until two of them share a second, and with it a name.
    for (int attempt = 0; attempt < 10; ++attempt) {
        agent().clearPictures();
        const qint64 intoSecond = QDateTime::currentMSecsSinceEpoch() % 1000;
        pause(std::chrono::milliseconds(1000 - intoSecond));
        select(first);
        waitForPicture();
        select(second);
        const auto isSecond = [&] {
            return QImage(waitForPicture()).size() == second.size() ||
                   agent().savedPictures().size() > 1;
        };
        ASSERT_TRUE(waitUntil(isSecond, std::chrono::seconds(5)));
        if (agent().savedPictures().size() == 1) {
            break;
        }
    }
    ASSERT_EQ(agent().savedPictures().size(), 1);
    const QString path = waitForPicture();
    EXPECT_TRUE(readWholePng(contentsOf(path)).has_value());
    EXPECT_EQ(QImage(path).convertToFormat(QImage::Format_RGB32), expected);
    EXPECT_EQ(agent().filesInPictureFolder(), QStringList(QFileInfo(path).fileName()));
}

TEST_F(SaveDurability, KillsAtRandomMomentsLeaveNoPartOfAPicture) {
    constexpr int usualRounds = 60;
    constexpr int measureEvery = 20;
    bool told = false;
    const int wanted = qEnvironmentVariableIntValue(killCount, &told);
    const int rounds = told ? wanted : usualRounds;
    const unsigned seed = std::random_device()();
    RecordProperty("seed", static_cast<int>(seed));
    std::printf("%d kills (%s), seed %u\n", rounds, killCount, seed);
    std::mt19937 random(seed);

    startSaving();
    select(noisyRect);
    waitForPicture();
    std::chrono::duration<double> wholeTime{0};
    int whole = 0;
    int leftOver = 0;
    for (int round = 0; round < rounds; ++round) {
        // The usual time is measured again now and then, as the machine may be busy or idle.
        const bool measuring = round % measureEvery == 0;
        endAgent();
        startSaving();
        agent().clearPictures();
        if (round % 2 == 1) {
            occupyComingNames();
        }
        agent().activateAction(u"capture-area"_s);
        agent().waitForOverlay();
        injector().drag(noisyRect.topLeft(), noisyRect.bottomRight() + QPoint(1, 1), 1);
        const auto release = Clock::now();
        if (measuring) {
            waitForPicture();
            wholeTime = Clock::now() - release;
        } else {
            std::uniform_real_distribution<double> part(0.2, 1.6);
            std::this_thread::sleep_for(wholeTime * part(random));
        }
        agent().killHard();
        const QStringList pictures = agent().savedPictures();
        for (const QString& picture : pictures) {
            const auto header = readWholePng(contentsOf(picture));
            ASSERT_TRUE(header.has_value()) << "round " << round << ", seed " << seed;
            whole += header->size == noisyRect.size() ? 1 : 0;
        }
        leftOver += static_cast<int>(agent().filesInPictureFolder().size() - pictures.size());
    }
    std::printf("%d whole pictures, %d unfinished files under names of their own\n", whole,
                leftOver);
    // Both ends of the time are covered.
    EXPECT_GT(whole, 0);
    EXPECT_LT(whole, rounds);
}

/// A file that another process holds, as one that is writing it does.
class HeldFile {
public:
    explicit HeldFile(const QString& path)
        : m_file(open(path.toLocal8Bit().constData(), O_RDONLY | O_CLOEXEC)) {
        EXPECT_EQ(flock(m_file, LOCK_EX | LOCK_NB), 0);
    }
    ~HeldFile() { close(m_file); }
    HeldFile(const HeldFile&) = delete;
    HeldFile& operator=(const HeldFile&) = delete;

private:
    int m_file;
};

class LeftOvers : public SaveDurability, public ::testing::WithParamInterface<const char*> {};

TEST_P(LeftOvers, AreClearedAwayAtTheNextStart) {
    const QString relative = QLatin1String(GetParam());
    const QString folder = desktop().folders().path(relative);
    const QString ours = u".Snapvane 2025-01-02 03.04.05.png.0123abcd.part"_s;
    const QString held = u".Snapvane 2025-01-02 03.04.06.png.0123abcd.part"_s;
    const QStringList others = {
        u"Snapvane 2025-01-02 03.04.05.png"_s,
        u".other.png.0123abcd.part"_s,
        u"notes.part"_s,
        u"Snapvane 2025-01-02 03.04.05.png.0123abcd.part"_s,
        u".Snapvane 2025-01-02 03.04.05.png.part"_s,
        u".Snapvane 2025-01-02 03.04.05.png.0123ABCD.part"_s,
        u".Snapvane 2025-01-02 03.04.05.jpg.0123abcd.part"_s,
    };
    for (const QString& name : QStringList{ours, held} + others) {
        desktop().folders().write(relative + u'/' + name, "left over");
    }
    // Nor is a link followed, or a folder taken for a file.
    const QString link = u".Snapvane 2025-01-02 03.04.07.png.0123abcd.part"_s;
    const QString subfolder = u".Snapvane 2025-01-02 03.04.08.png.0123abcd.part"_s;
    QFile::link(folder + u"/notes.part"_s, folder + u'/' + link);
    QDir(folder).mkdir(subfolder);
    const HeldFile holder(folder + u'/' + held);

    startAgent("saveFolderSecurityBookmark=" + folder.toLocal8Bit() + '\n');
    EXPECT_TRUE(
        waitUntil([&] { return !QFile::exists(folder + u'/' + ours); }, std::chrono::seconds(5)));
    // Everything in the folder is seen to in one go; in case it is not over yet.
    pause(std::chrono::milliseconds(200));
    for (const QString& name : QStringList{held, subfolder, link} + others) {
        EXPECT_TRUE(QFile::exists(folder + u'/' + name)) << name.toStdString();
    }
    EXPECT_TRUE(QDir(folder).removeRecursively());
}

INSTANTIATE_TEST_SUITE_P(Folders, LeftOvers,
                         ::testing::Values("home/Pictures/Snapvane", "home/Chosen Folder"),
                         [](const auto& row) {
                             return std::string(row.index == 0 ? "Default" : "Chosen");
                         });

class FileMode : public SaveDurability, public ::testing::WithParamInterface<mode_t> {};

TEST_P(FileMode, IsWhatTheUmaskLeaves) {
    const mode_t before = umask(GetParam());
    startSaving();
    umask(before);
    select(noisyRect);
    struct stat status = {};
    ASSERT_EQ(stat(waitForPicture().toLocal8Bit().constData(), &status), 0);
    constexpr mode_t everybody = 0666;
    constexpr mode_t permissions = 07777;
    EXPECT_EQ(status.st_mode & permissions, everybody & ~GetParam());
}

INSTANTIATE_TEST_SUITE_P(Umasks, FileMode,
                         ::testing::Values(mode_t(022), mode_t(027), mode_t(077)));

} // namespace

} // namespace snapvane::testing
