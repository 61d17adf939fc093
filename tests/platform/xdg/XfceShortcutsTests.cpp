// Most of these ask the real settings service.

#include "platform/xdg/XfceShortcuts.h"

#include "ChildProcess.h"
#include "Wait.h"
#include "platform/xdg/FakeBusService.h"
#include "platform/xdg/SessionEnvironment.h"
#include "platform/xdg/UsKeys.h"

#include <QDBusConnectionInterface>
#include <QDir>
#include <QElapsedTimer>
#include <QFile>

#include <gmock/gmock.h>

using namespace Qt::StringLiterals;

namespace snapvane::xdg {

namespace {

using ::snapvane::testing::ChildProcess;
using ::snapvane::testing::Combination;
using ::snapvane::testing::combinations;
using ::snapvane::testing::FakeBusService;
using ::snapvane::testing::SessionEnvironment;
using ::snapvane::testing::usKeyOfSymbol;
using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::UnorderedElementsAre;

const QString name = u"org.xfce.Xfconf"_s;

// The service always adds what Xfce itself comes with on this machine. None of that has Shift and
// Super together; all that the tests look at has.
constexpr std::int64_t ourMark = CarbonModifier::shift | CarbonModifier::command;

const Combination ofF1 = {122, ourMark};
const Combination ofF2 = {120, ourMark};
const Combination ofF4 = {118, ourMark};
const Combination ofF5 = {96, ourMark};
const Combination ofAltA = {0, ourMark | CarbonModifier::option};
const Combination ofCtrlPrint = {105, ourMark | CarbonModifier::control};

class XfceShortcutsTest : public ::testing::Test {
protected:
    void TearDown() override {
        m_settings.reset();
        testing::require("the settings service to end", [] { return !isServiceRunning(); });
    }

    static bool isServiceRunning() {
        return QDBusConnection::sessionBus().interface()->isServiceRegistered(name).value();
    }
    static std::vector<Combination> shortcuts() {
        auto result = combinations(xfceShortcuts(usKeyOfSymbol));
        std::erase_if(result, [](const Combination& combination) {
            return (combination.second & ourMark) != ourMark;
        });
        return result;
    }

    /// Starts the service on a configuration folder of its own, with these properties below the
    /// channel's root.
    void startService(const QByteArray& properties) {
        const QString folder = m_folder.filePath(u"xfce4/xfconf/xfce-perchannel-xml"_s);
        ASSERT_TRUE(QDir().mkpath(folder));
        QFile file(folder + u"/xfce4-keyboard-shortcuts.xml"_s);
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write("<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
                   "<channel name=\"xfce4-keyboard-shortcuts\" version=\"1.0\">" +
                   properties + "</channel>\n");
        file.close();
        m_settings = start(QStringLiteral(SNAPVANE_XFCONFD), {});
        testing::require("the settings service", [] { return isServiceRunning(); });
    }

    /// As a settings dialog would.
    void changeProperty(const QStringList& arguments) {
        const auto query = start(u"xfconf-query"_s,
                                 QStringList{u"-c"_s, u"xfce4-keyboard-shortcuts"_s} + arguments);
        const auto exit = query->waitForExit(std::chrono::seconds(10));
        ASSERT_TRUE(exit);
        ASSERT_EQ(exit->code, 0);
    }

private:
    [[nodiscard]] std::unique_ptr<ChildProcess> start(const QString& program,
                                                      const QStringList& arguments) const {
        ChildProcess::Spec spec;
        spec.program = program;
        spec.arguments = arguments;
        spec.environment = QProcessEnvironment::systemEnvironment();
        spec.environment.insert(u"XDG_CONFIG_HOME"_s, m_folder.path());
        spec.outputFile = m_folder.filePath(u"log"_s);
        return std::make_unique<ChildProcess>(spec);
    }

    QTemporaryDir m_folder;
    std::unique_ptr<ChildProcess> m_settings;
};

TEST_F(XfceShortcutsTest, AreThoseOfCommandsAndOfTheWindowManager) {
    startService(R"(
        <property name="commands" type="empty">
          <property name="default" type="empty">
            <property name="&lt;Shift&gt;&lt;Super&gt;F1" type="string" value="xfce4-popup-applicationsmenu"/>
          </property>
          <property name="custom" type="empty">
            <property name="&lt;Primary&gt;&lt;Shift&gt;&lt;Super&gt;Print" type="string" value="shoot"/>
          </property>
        </property>
        <property name="xfwm4" type="empty">
          <property name="default" type="empty">
            <property name="&lt;Shift&gt;&lt;Super&gt;F4" type="string" value="close_window_key"/>
          </property>
          <property name="custom" type="empty">
            <property name="&lt;Shift&gt;&lt;Alt&gt;&lt;Super&gt;a" type="string" value="above_key"/>
          </property>
        </property>)");
    EXPECT_THAT(shortcuts(), UnorderedElementsAre(ofF1, ofCtrlPrint, ofF4, ofAltA));
}

TEST_F(XfceShortcutsTest, OnlyTheUsersOwnCountWhereTheyOverrideTheOthers) {
    startService(R"(
        <property name="commands" type="empty">
          <property name="default" type="empty">
            <property name="&lt;Shift&gt;&lt;Super&gt;F1" type="string" value="menu"/>
          </property>
          <property name="custom" type="empty">
            <property name="&lt;Shift&gt;&lt;Super&gt;F2" type="string" value="run"/>
            <property name="override" type="bool" value="true"/>
          </property>
        </property>
        <property name="xfwm4" type="empty">
          <property name="default" type="empty">
            <property name="&lt;Shift&gt;&lt;Super&gt;F4" type="string" value="close_window_key"/>
          </property>
          <property name="custom" type="empty">
            <property name="&lt;Shift&gt;&lt;Super&gt;F5" type="string" value="maximize_window_key"/>
            <property name="override" type="bool" value="false"/>
          </property>
        </property>)");
    EXPECT_THAT(shortcuts(), UnorderedElementsAre(ofF2, ofF4, ofF5));
}

TEST_F(XfceShortcutsTest, TheWindowManagersOwnCanOverrideAsWell) {
    startService(R"(
        <property name="commands" type="empty">
          <property name="default" type="empty">
            <property name="&lt;Shift&gt;&lt;Super&gt;F1" type="string" value="menu"/>
          </property>
        </property>
        <property name="xfwm4" type="empty">
          <property name="default" type="empty">
            <property name="&lt;Shift&gt;&lt;Super&gt;F4" type="string" value="close_window_key"/>
          </property>
          <property name="custom" type="empty">
            <property name="override" type="bool" value="true"/>
          </property>
        </property>)");
    EXPECT_THAT(shortcuts(), ElementsAre(ofF1));
}

TEST_F(XfceShortcutsTest, WhatIsSaidAboutAShortcutIsNoShortcut) {
    startService(R"(
        <property name="commands" type="empty">
          <property name="custom" type="empty">
            <property name="&lt;Shift&gt;&lt;Super&gt;F1" type="string" value="menu">
              <property name="startup-notify" type="bool" value="true"/>
              <property name="&lt;Shift&gt;&lt;Super&gt;F2" type="string" value="below"/>
            </property>
            <property name="&lt;Shift&gt;&lt;Super&gt;F4" type="empty">
              <property name="startup-notify" type="bool" value="true"/>
            </property>
          </property>
        </property>
        <property name="providers" type="array">
          <value type="string" value="commands"/>
        </property>
        <property name="&lt;Shift&gt;&lt;Super&gt;F4" type="string" value="elsewhere"/>
        <property name="commands-not" type="empty">
          <property name="custom" type="empty">
            <property name="&lt;Shift&gt;&lt;Super&gt;F5" type="string" value="elsewhere"/>
          </property>
        </property>)");
    EXPECT_THAT(shortcuts(), ElementsAre(ofF1));
}

TEST_F(XfceShortcutsTest, OnlyTextsAreActions) {
    startService(R"(
        <property name="commands" type="empty">
          <property name="custom" type="empty">
            <property name="&lt;Shift&gt;&lt;Super&gt;F1" type="string" value=""/>
            <property name="&lt;Shift&gt;&lt;Super&gt;F2" type="bool" value="true"/>
            <property name="&lt;Shift&gt;&lt;Super&gt;F4" type="int" value="4"/>
            <property name="&lt;Shift&gt;&lt;Super&gt;F5" type="string" value="something"/>
            <property name="&lt;Shift&gt;&lt;Super&gt;&lt;Hyper&gt;F5" type="string" value="something"/>
          </property>
        </property>)");
    EXPECT_THAT(shortcuts(), ElementsAre(ofF5));
}

TEST_F(XfceShortcutsTest, AreReadAnewOnEachCall) {
    startService({});
    EXPECT_THAT(shortcuts(), IsEmpty());
    changeProperty({u"-n"_s, u"-t"_s, u"string"_s, u"-s"_s, u"run"_s, u"-p"_s,
                    u"/commands/custom/<Shift><Super>F2"_s});
    EXPECT_THAT(shortcuts(), ElementsAre(ofF2));
    changeProperty({u"-r"_s, u"-p"_s, u"/commands/custom/<Shift><Super>F2"_s});
    EXPECT_THAT(shortcuts(), IsEmpty());
}

TEST_F(XfceShortcutsTest, NobodyWaitsForAServiceThatNeverAnswers) {
    const FakeBusService service(name, [](const QDBusMessage&, const QDBusConnection&) {});
    QElapsedTimer clock;
    clock.start();
    EXPECT_THAT(shortcuts(), IsEmpty());
    EXPECT_LT(clock.elapsed(), 1500);
}

TEST_F(XfceShortcutsTest, AnswersOfOtherTypesAreNone) {
    for (const QVariant& answer : {QVariant(u"/commands/custom/<Shift><Super>F2"_s),
                                   QVariant(QStringList{u"text"_s}), QVariant(17)}) {
        const FakeBusService service(
            name, [&answer](const QDBusMessage& message, const QDBusConnection& connection) {
                connection.send(message.createReply(answer));
            });
        EXPECT_THAT(shortcuts(), IsEmpty());
    }
}

TEST_F(XfceShortcutsTest, AnErrorIsNone) {
    const FakeBusService service(
        name, [](const QDBusMessage& message, const QDBusConnection& connection) {
            connection.send(message.createErrorReply(QDBusError::Failed, u"no such channel"_s));
        });
    EXPECT_THAT(shortcuts(), IsEmpty());
}

TEST_F(XfceShortcutsTest, AServiceThatDoesNotRunIsNotStarted) {
    EXPECT_THAT(shortcuts(), IsEmpty());
    SessionEnvironment::letTheBusStartAnother();
    EXPECT_FALSE(SessionEnvironment::wasStarted(name));
    EXPECT_FALSE(isServiceRunning());
}

} // namespace

} // namespace snapvane::xdg
