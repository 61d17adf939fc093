// Saving where it cannot be done, and being killed while saving.

#include "AgentSuite.h"
#include "PrivateMount.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <cstdio>
#include <random>
#include <thread>

using namespace Qt::StringLiterals;

namespace snapvane::testing {

namespace {

constexpr QRect noisyRect(200, 200, 600, 400);

class SaveFaults : public ::testing::Test {
protected:
    SaveFaults() {
        TestClient::Options options;
        options.mode = u"noise"_s;
        options.rect = noisyRect;
        options.overrideRedirect = true;
        m_noise = std::make_unique<TestClient>(m_desktop, options);
    }

    /// Captures the noise, more than 700 kB of PNG.
    void capture(AgentProcess& agent) {
        agent.activateAction(u"capture-area"_s);
        agent.waitForOverlay();
        dragOverNoise();
    }

    void dragOverNoise() {
        Injector(m_desktop.connection())
            .drag(noisyRect.topLeft(), noisyRect.bottomRight() + QPoint(1, 1));
    }

    /// The log names the failure in the system's own words.
    static void expectSaveFailed(AgentProcess& agent, const QString& systemText) {
        EXPECT_TRUE(agent.waitForLogLine(u"\\] error: Save failed: .*"_s + systemText))
            << agent.log().toStdString();
        EXPECT_TRUE(agent.waitForOverlayGone());
        EXPECT_TRUE(agent.process().isRunning());
    }

    VirtualDesktop m_desktop;
    std::unique_ptr<TestClient> m_noise;
};

TEST_F(SaveFaults, FolderThatMayNotBeWritten) {
    AgentOptions options;
    options.withoutFileOverrides = true;
    AgentProcess agent(m_desktop, options);
    QDir().mkpath(agent.pictureFolder());
    QFile::setPermissions(agent.pictureFolder(), QFile::ReadOwner | QFile::ExeOwner);
    capture(agent);
    expectSaveFailed(agent, u"Permission denied"_s);
    EXPECT_TRUE(agent.filesInPictureFolder().isEmpty());

    // The next one is saved again once the folder may be written.
    QFile::setPermissions(agent.pictureFolder(),
                          QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
    EXPECT_EQ(agent.capture({100, 100}, {300, 200}).size(), QSize(200, 100));
}

TEST_F(SaveFaults, ParentFolderThatMayNotBeWritten) {
    const QString pictures = m_desktop.folders().pictures();
    AgentOptions options;
    options.withoutFileOverrides = true;
    AgentProcess agent(m_desktop, options);
    QDir(pictures).rmdir(u"Snapvane"_s);
    QFile::setPermissions(pictures, QFile::ReadOwner | QFile::ExeOwner);
    capture(agent);
    expectSaveFailed(agent, u"Permission denied"_s);
    QFile::setPermissions(pictures, QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
    EXPECT_TRUE(QDir(pictures).isEmpty());
}

TEST_F(SaveFaults, FileInPlaceOfTheFolder) {
    m_desktop.folders().write(u"home/Pictures/Snapvane"_s, "not a folder");
    AgentProcess agent(m_desktop);
    capture(agent);
    expectSaveFailed(agent, u"(File exists|Not a directory)"_s);
    QFile file(agent.pictureFolder());
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    EXPECT_EQ(file.readAll(), "not a folder");
}

TEST_F(SaveFaults, MissingPicturesFolderIsMade) {
    QDir().rmdir(m_desktop.folders().pictures());
    AgentProcess agent(m_desktop);
    EXPECT_EQ(agent.capture({100, 100}, {300, 200}).size(), QSize(200, 100));
}

TEST_F(SaveFaults, WriteThatStopsHalfWayLeavesNothing) {
    AgentProcess agent(m_desktop);
    agent.activateAction(u"capture-area"_s);
    agent.waitForOverlay();
    agent.limitFileSize(qint64(64) * 1024);
    dragOverNoise();
    expectSaveFailed(agent, u"File too large"_s);
    EXPECT_TRUE(agent.filesInPictureFolder().isEmpty());
}

TEST_F(SaveFaults, FullDiskLeavesNothing) {
    AgentOptions options;
    const bool realDisk = canMountPrivately();
    if (realDisk) {
        options.tinyDiskOn = m_desktop.folders().pictures();
    } else {
        std::printf(
            "no file system may be mounted here: a size limit stands in for the full disk\n");
    }
    AgentProcess agent(m_desktop, options);
    agent.activateAction(u"capture-area"_s);
    agent.waitForOverlay();
    if (!realDisk) {
        agent.limitFileSize(qint64(64) * 1024);
    }
    dragOverNoise();
    expectSaveFailed(agent, realDisk ? u"No space left on device"_s : u"File too large"_s);
    // As the agent sees it, below its own mount.
    const QDir folder(u"/proc/%1/root"_s.arg(agent.id()) + agent.pictureFolder());
    EXPECT_TRUE(folder.entryList(QDir::Files | QDir::Hidden).isEmpty());
}

TEST_F(SaveFaults, TwoPicturesInOneSecondLeaveOneWholeFile) {
    AgentProcess agent(m_desktop);
    agent.capture({100, 100}, {300, 200});
    for (int round = 0; round < 3; ++round) {
        agent.activateAction(u"capture-area"_s);
        agent.waitForOverlay();
        Injector(m_desktop.connection()).drag({100, 100}, {300, 200});
        EXPECT_TRUE(agent.waitForOverlayGone());
    }
    pause(std::chrono::milliseconds(500));
    for (const QString& picture : agent.savedPictures()) {
        EXPECT_TRUE(isPlainRgb(picture));
    }
    EXPECT_EQ(agent.savedPictures().size(), agent.filesInPictureFolder().size());
}

TEST_F(SaveFaults, KillWhileSavingLeavesAWholeFileOrNone) {
    using Clock = std::chrono::steady_clock;
    constexpr int rounds = 30;
    std::chrono::duration<double> wholeTime{0};
    {
        AgentProcess agent(m_desktop);
        agent.activateAction(u"capture-area"_s);
        agent.waitForOverlay();
        dragOverNoise();
        const auto release = Clock::now();
        agent.waitForPicture();
        wholeTime = Clock::now() - release;
        agent.clearPictures();
    }
    std::mt19937 random(20250302);
    std::uniform_real_distribution<double> part(0.0, 1.6);
    int whole = 0;
    for (int round = 0; round < rounds; ++round) {
        AgentProcess agent(m_desktop);
        capture(agent);
        std::this_thread::sleep_for(wholeTime * part(random));
        agent.killHard();
        for (const QString& picture : agent.savedPictures()) {
            EXPECT_TRUE(isPlainRgb(picture)) << "round " << round;
            ++whole;
        }
        agent.clearPictures();
    }
    std::printf("%d of %d kills came after the save\n", whole, rounds);
}

TEST_F(SaveFaults, LeavingRightAfterTheReleaseStillSaves) {
    for (const int delayMs : {0, 5, 15, 40}) {
        AgentProcess agent(m_desktop);
        agent.clearPictures();
        capture(agent);
        pause(std::chrono::milliseconds(delayMs));
        const ChildProcess::Exit exit = agent.terminate();
        EXPECT_EQ(exit.code, 0);
        EXPECT_EQ(exit.signal, 0);
        const QStringList files = agent.filesInPictureFolder();
        ASSERT_EQ(files.size(), 1) << "after " << delayMs << " ms";
        EXPECT_EQ(QImage(agent.savedPictures().value(0)).size(), noisyRect.size());
    }
}

} // namespace

} // namespace snapvane::testing
