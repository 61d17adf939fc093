// Starting under bad conditions: a message or a line in the log, never a crash or a hang.

#include "AgentSuite.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

using namespace Qt::StringLiterals;

namespace snapvane::testing {

namespace {

AgentOptions withVariable(const QString& name, const QString& value) {
    AgentOptions options;
    options.variables = {{name, value}};
    options.waitUntilReady = false;
    return options;
}

class StartFaults : public ::testing::Test {
protected:
    static void SetUpTestSuite() { s_desktop = std::make_unique<VirtualDesktop>(); }
    static void TearDownTestSuite() { s_desktop.reset(); }
    static const VirtualDesktop& desktop() { return *s_desktop; }
    static X11Probe probe() { return X11Probe(s_desktop->connection()); }

    static void expectCleanRefusal(AgentProcess& agent) {
        const auto exit = agent.waitForEnd();
        ASSERT_TRUE(exit) << "it does not end";
        EXPECT_EQ(exit->signal, 0) << agent.log().toStdString();
        EXPECT_NE(exit->code, 0) << agent.log().toStdString();
        EXPECT_TRUE(agent.waitForLogLine(u"display"_s)) << agent.log().toStdString();
    }

    static std::unique_ptr<VirtualDesktop> s_desktop;
};

std::unique_ptr<VirtualDesktop> StartFaults::s_desktop;

TEST_F(StartFaults, NoDisplayEndsWithAMessage) {
    AgentProcess agent(desktop(), withVariable(u"DISPLAY"_s, {}));
    expectCleanRefusal(agent);
}

TEST_F(StartFaults, UnreachableDisplayEndsWithAMessage) {
    AgentProcess agent(desktop(), withVariable(u"DISPLAY"_s, u":4095"_s));
    expectCleanRefusal(agent);
}

TEST_F(StartFaults, NoSessionBusIsLoggedAndSurvived) {
    const QString nowhere = u"unix:path="_s + desktop().folders().runtime() + u"/nowhere"_s;
    AgentProcess agent(desktop(), withVariable(u"DBUS_SESSION_BUS_ADDRESS"_s, nowhere));
    EXPECT_TRUE(agent.waitForLogLine(u"bus"_s, 0, std::chrono::seconds(8)));
    EXPECT_FALSE(agent.process().waitForExit(std::chrono::seconds(1)));
}

TEST_F(StartFaults, SecondInstanceLeavesAtOnce) {
    AgentProcess first(desktop());
    AgentProcess second(desktop(), withVariable(u"SNAPVANE_PLATFORM"_s, {}));
    const auto exit = second.waitForEnd(std::chrono::seconds(5));
    ASSERT_TRUE(exit) << "the second instance stays";
    EXPECT_EQ(exit->signal, 0);
    EXPECT_EQ(exit->code, 0);
    EXPECT_TRUE(first.process().isRunning());
    EXPECT_EQ(first.capture({100, 100}, {300, 200}).size(), QSize(200, 100));
}

TEST_F(StartFaults, DamagedPreferencesAreKeptAside) {
    const QByteArray damaged[] = {
        "[General\nselectionDimAmount=0.4\n",
        "this is no preferences file\nat all\n",
        QByteArray("\x89PNG\r\n\x1a\n\x00\x00\x00\rIHDR\x00\xff", 18),
        QByteArray(300, '\0'),
    };
    const QString relative = u"config/Snapvane/Snapvane.conf"_s;
    for (const QByteArray& contents : damaged) {
        SCOPED_TRACE(contents.left(20).toPercentEncoding(" ").toStdString());
        desktop().folders().write(relative, contents);
        {
            AgentProcess agent(desktop());
            EXPECT_EQ(agent.capture({100, 100}, {300, 200}).size(), QSize(200, 100));
        }
        QFile backup(desktop().folders().path(relative + u".bak"_s));
        const bool kept = backup.open(QIODevice::ReadOnly) && backup.readAll() == contents;
        EXPECT_TRUE(kept) << "the damaged file was not kept as it was";
        QFile::remove(backup.fileName());
        QFile::remove(desktop().folders().path(relative));
    }
}

TEST_F(StartFaults, SoundPreferencesAreLeftAlone) {
    const QString relative = u"config/Snapvane/Snapvane.conf"_s;
    desktop().folders().write(relative, plainPreferences());
    {
        AgentProcess agent(desktop());
        EXPECT_EQ(agent.capture({100, 100}, {300, 200}).size(), QSize(200, 100));
    }
    const QDir folder(QFileInfo(desktop().folders().path(relative)).path());
    EXPECT_EQ(folder.entryList({u"*.bak*"_s}, QDir::Files), QStringList());
    QFile::remove(desktop().folders().path(relative));
}

TEST_F(StartFaults, TerminationLeavesNothingBehind) {
    AgentProcess agent(desktop());
    agent.activateAction(u"capture-area"_s);
    agent.waitForOverlay();
    const ChildProcess::Exit exit = agent.terminate();
    EXPECT_EQ(exit.signal, 0);
    EXPECT_EQ(exit.code, 0);
    EXPECT_TRUE(waitUntil([] { return probe().windowsOfClass(u"Snapvane"_s).empty(); },
                          std::chrono::seconds(2)));
}

TEST_F(StartFaults, QuitActionEndsItWithSuccess) {
    AgentProcess agent(desktop());
    agent.activateAction(u"quit"_s);
    const auto exit = agent.waitForEnd(std::chrono::seconds(5));
    ASSERT_TRUE(exit);
    EXPECT_EQ(exit->signal, 0);
    EXPECT_EQ(exit->code, 0);
}

TEST_F(StartFaults, UnknownActionIsHarmless) {
    AgentProcess agent(desktop());
    try {
        agent.activateAction(u"no-such-action"_s);
    } catch (const std::runtime_error&) {
        // Refusing it is as good as ignoring it.
    }
    EXPECT_EQ(agent.capture({100, 100}, {300, 200}).size(), QSize(200, 100));
}

} // namespace

} // namespace snapvane::testing
