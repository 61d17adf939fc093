// The real settings library with the real schemas, each time in a process of its own.

#include "platform/xdg/GnomeShortcuts.h"

#include "ChildProcess.h"
#include "DesktopFolders.h"
#include "platform/xdg/UsKeys.h"

#include <QDir>
#include <QFile>

#include <gmock/gmock.h>

#include <sstream>

using namespace Qt::StringLiterals;

namespace snapvane::xdg {

namespace {

using ::snapvane::testing::ChildProcess;
using ::snapvane::testing::Combination;
using ::snapvane::testing::DesktopFolders;
using ::testing::AllOf;
using ::testing::Contains;
using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::IsSupersetOf;
using ::testing::Not;
using ::testing::UnorderedElementsAre;

constexpr std::int64_t command = CarbonModifier::command;
constexpr std::int64_t shift = CarbonModifier::shift;
constexpr std::int64_t option = CarbonModifier::option;
constexpr std::int64_t control = CarbonModifier::control;

const QString windowManager = u"org.gnome.desktop.wm.keybindings"_s;
const QString mediaKeys = u"org.gnome.settings-daemon.plugins.media-keys"_s;
const QString customShortcut = u"org.gnome.settings-daemon.plugins.media-keys.custom-keybinding"_s;

class GnomeShortcutsTest : public ::testing::Test {
protected:
    GnomeShortcutsTest() {
        m_environment.insert(u"GSETTINGS_BACKEND"_s, u"keyfile"_s);
        setDesktop(u"GNOME"_s);
    }

    void setDesktop(const QString& desktop) {
        m_environment.insert(u"XDG_CURRENT_DESKTOP"_s, desktop);
    }
    void forgetDesktop() { m_environment.remove(u"XDG_CURRENT_DESKTOP"_s); }

    void set(const QString& schema, const QString& key, const QString& value) {
        run(u"gsettings"_s, {u"set"_s, schema, key, value});
    }
    void setCustomShortcut(const QString& path, const QString& accelerator) {
        set(customShortcut + u':' + path, u"binding"_s, accelerator);
        // Neither is a shortcut, whatever it looks like.
        set(customShortcut + u':' + path, u"name"_s, u"F1"_s);
        set(customShortcut + u':' + path, u"command"_s, u"F2"_s);
    }

    /// From now on only these schemas are installed.
    void installOnly(const QByteArray& schemas) {
        m_folders.write(u"schemas/test.gschema.xml"_s,
                        "<?xml version=\"1.0\"?><schemalist>" + schemas + "</schemalist>");
        run(u"glib-compile-schemas"_s, {m_folders.path(u"schemas"_s)});
        installNone();
        m_environment.insert(u"GSETTINGS_SCHEMA_DIR"_s, m_folders.path(u"schemas"_s));
    }
    void installNone() {
        ASSERT_TRUE(QDir().mkpath(m_folders.path(u"empty"_s)));
        m_environment.insert(u"XDG_DATA_DIRS"_s, m_folders.path(u"empty"_s));
        m_environment.insert(u"GSETTINGS_SCHEMA_DIR"_s, m_folders.path(u"empty"_s));
    }

    std::vector<Combination> shortcuts() {
        // What the library merely complains about must not happen either.
        m_environment.insert(u"G_DEBUG"_s, u"fatal-warnings"_s);
        std::istringstream lines(run(QStringLiteral(SNAPVANE_SHORTCUT_LISTER), {}).toStdString());
        std::vector<Combination> result;
        for (Combination line; lines >> line.first >> line.second;) {
            result.push_back(line);
        }
        m_environment.remove(u"G_DEBUG"_s);
        return result;
    }

private:
    QByteArray run(const QString& program, const QStringList& arguments) {
        ChildProcess::Spec spec;
        spec.program = program;
        spec.arguments = arguments;
        spec.environment = m_environment;
        spec.outputFile = m_folders.log(QString::number(++m_runs));
        ChildProcess process(spec);
        const auto exit = process.waitForExit(std::chrono::seconds(20));
        QFile file(spec.outputFile);
        QByteArray output = file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
        EXPECT_TRUE(exit && exit->code == 0 && exit->signal == 0)
            << program.toStdString() << ": " << output.toStdString();
        return output;
    }

    DesktopFolders m_folders;
    QProcessEnvironment m_environment = m_folders.environment();
    int m_runs = 0;
};

TEST_F(GnomeShortcutsTest, AreThoseOfAllSchemas) {
    EXPECT_THAT(shortcuts(),
                IsSupersetOf({Combination(118, option), // the window manager closes
                              Combination(50, command), // it switches in a group
                              Combination(35, command), // another monitor
                              Combination(105, 0),      // the shell's screenshot
                              Combination(15, control | shift | option), // its recording
                              Combination(117, control | option),        // log out
                              Combination(31, command), // a media key in a fixed place
                              Combination(74, 0)}));    // mute, another one
}

TEST_F(GnomeShortcutsTest, EveryAcceleratorOfAListCounts) {
    set(windowManager, u"close"_s, u"['<Super>F5', '', '<Control><Alt>F6']"_s);
    EXPECT_THAT(shortcuts(), AllOf(Contains(Combination(96, command)),
                                   Contains(Combination(97, control | option)),
                                   Not(Contains(Combination(118, option)))));
}

TEST_F(GnomeShortcutsTest, WhatIsTurnedOffDoesNotCount) {
    set(windowManager, u"close"_s, u"['disabled']"_s);
    set(mediaKeys, u"logout"_s, u"['']"_s);
    EXPECT_THAT(shortcuts(), AllOf(Not(Contains(Combination(118, option))),
                                   Not(Contains(Combination(117, control | option)))));
}

TEST_F(GnomeShortcutsTest, TheUsersOwnCommandsCount) {
    set(mediaKeys, u"custom-keybindings"_s, u"['/custom/one/', '/custom/two/']"_s);
    setCustomShortcut(u"/custom/one/"_s, u"<Super><Shift>F6"_s);
    setCustomShortcut(u"/custom/two/"_s, u"<Control>F12"_s);
    setCustomShortcut(u"/custom/forgotten/"_s, u"<Control>F5"_s);
    EXPECT_THAT(shortcuts(),
                AllOf(Contains(Combination(97, command | shift)),
                      Contains(Combination(111, control)), Not(Contains(Combination(96, control))),
                      Not(Contains(Combination(122, 0))), Not(Contains(Combination(120, 0)))));
}

TEST_F(GnomeShortcutsTest, PathsThatAreNoneAreSkipped) {
    set(mediaKeys, u"custom-keybindings"_s,
        u"['', 'none', 'none/', '/none', '/no//ne/', '//', '/none/at/all/', '/custom/']"_s);
    setCustomShortcut(u"/custom/"_s, u"<Super><Shift>F6"_s);
    EXPECT_THAT(shortcuts(), Contains(Combination(97, command | shift)));
}

TEST_F(GnomeShortcutsTest, ThePathsThemselvesAreNoShortcuts) {
    set(mediaKeys, u"custom-keybindings"_s, u"['F1']"_s);
    EXPECT_THAT(shortcuts(), Not(Contains(Combination(122, 0))));
}

TEST_F(GnomeShortcutsTest, WithoutSchemasThereAreNone) {
    installNone();
    EXPECT_THAT(shortcuts(), IsEmpty());
}

TEST_F(GnomeShortcutsTest, TheSchemasThatAreInstalledCount) {
    installOnly(R"(<schema id="org.gnome.shell.keybindings" path="/shell/">
        <key name="one" type="as"><default>['F1', '&lt;Super&gt;a']</default></key>
        <key name="two" type="s"><default>'F2'</default></key>
        <key name="three" type="i"><default>3</default></key>
        </schema>)");
    EXPECT_THAT(shortcuts(), UnorderedElementsAre(Combination(122, 0), Combination(0, command),
                                                  Combination(120, 0)));
}

TEST_F(GnomeShortcutsTest, SchemasOfAnotherMakeAreSkipped) {
    installOnly(R"(<schema id="org.gnome.shell.keybindings">
        <key name="one" type="as"><default>['F1']</default></key></schema>
        <schema id="org.gnome.settings-daemon.plugins.media-keys" path="/media/">
        <key name="custom-keybindings" type="as"><default>['/custom/']</default></key>
        <key name="two" type="s"><default>'F2'</default></key></schema>
        <schema id="org.gnome.settings-daemon.plugins.media-keys.custom-keybinding">
        <key name="name" type="s"><default>'F4'</default></key></schema>)");
    EXPECT_THAT(shortcuts(), ElementsAre(Combination(120, 0)));
}

TEST_F(GnomeShortcutsTest, WithoutADesktopThereAreNone) {
    forgetDesktop();
    EXPECT_THAT(shortcuts(), IsEmpty());
}

struct Desktop {
    const char* name;
    bool isGnome;
};

void PrintTo(const Desktop& desktop, std::ostream* stream) {
    *stream << desktop.name;
}

class GnomeDesktops : public GnomeShortcutsTest, public ::testing::WithParamInterface<Desktop> {};

TEST_P(GnomeDesktops, AreKnownByTheirNames) {
    setDesktop(QString::fromUtf8(GetParam().name));
    EXPECT_NE(shortcuts().empty(), GetParam().isGnome);
}

constexpr Desktop desktops[] = {{"GNOME", true},        {"gnome", true},
                                {"ubuntu:GNOME", true}, {"GNOME-Classic:GNOME", true},
                                {"Gnome:other", true},  {"", false},
                                {"KDE", false},         {"XFCE", false},
                                {"NotGNOME", false},    {"GNOMEISH:X-GNOME", false}};
INSTANTIATE_TEST_SUITE_P(All, GnomeDesktops, ::testing::ValuesIn(desktops));

} // namespace

} // namespace snapvane::xdg
