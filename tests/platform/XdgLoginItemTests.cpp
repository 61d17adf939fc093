#include "platform/xdg/XdgLoginItem.h"

#include "platform/PlatformError.h"
#include "support/QtPrinting.h"

#include <gtest/gtest.h>

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QProcess>
#include <QTemporaryDir>

#include <filesystem>

namespace snapvane {

namespace {

using xdg::XdgLoginItem;

/// A configuration folder for one test.
class XdgLoginItemTest : public ::testing::Test {
public:
    XdgLoginItemTest() { qputenv("XDG_CONFIG_HOME", QFile::encodeName(configuration())); }
    ~XdgLoginItemTest() override { qunsetenv("XDG_CONFIG_HOME"); }

protected:
    QString configuration() const { return m_root.filePath(QStringLiteral("config")); }
    QString entryPath() const {
        return configuration() + QStringLiteral("/autostart/app.snapvane.Snapvane.desktop");
    }

    QByteArray entry() const {
        QFile file(entryPath());
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    }

    void writeEntry(const QByteArray& contents) const {
        QDir().mkpath(configuration() + QStringLiteral("/autostart"));
        QFile file(entryPath());
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(contents);
    }

    static void makeFile(const QString& path) {
        QFile file(path);
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    }

    QByteArray valueOf(const QByteArray& key) const {
        for (const QByteArray& line : entry().split('\n')) {
            if (line.startsWith(key + '=')) {
                return line.mid(key.size() + 1);
            }
        }
        return {};
    }

    XdgLoginItem m_item;

private:
    QTemporaryDir m_root;
};

/// The value of a key of the type string.
QByteArray unescapedString(const QByteArray& value) {
    QByteArray result;
    for (qsizetype i = 0; i < value.size(); ++i) {
        if (value[i] != '\\') {
            result += value[i];
            continue;
        }
        ++i;
        const char next = i < value.size() ? value[i] : '?';
        result += next == 's' ? ' ' : next == 'n' ? '\n' : next == 't' ? '\t' : next;
    }
    return result;
}

/// The program of a command line whose first argument stands in quotes, as the desktop reads it.
QByteArray programOf(const QByteArray& commandLine) {
    QByteArray program;
    if (!commandLine.startsWith('"')) {
        return "not quoted";
    }
    for (qsizetype i = 1; i < commandLine.size() && commandLine[i] != '"'; ++i) {
        i += commandLine[i] == '\\' ? 1 : 0;
        program += commandLine[i];
    }
    return program.replace("%%", "%");
}

} // namespace

TEST_F(XdgLoginItemTest, KeepsItsEntryInTheAutostartFolder) {
    EXPECT_EQ(XdgLoginItem::entryPath(), entryPath());
    EXPECT_FALSE(m_item.isRegistered());
}

TEST_F(XdgLoginItemTest, WritesAnEntryThatStartsThisProgram) {
    m_item.registerItem();
    EXPECT_TRUE(m_item.isRegistered());
    EXPECT_EQ(valueOf("Type"), "Application");
    EXPECT_EQ(valueOf("Name"), "Snapvane");
    EXPECT_EQ(valueOf("Icon"), "app.snapvane.Snapvane");
    EXPECT_EQ(programOf(unescapedString(valueOf("Exec"))),
              QFile::encodeName(QCoreApplication::applicationFilePath()));
    QProcess validator;
    validator.setProcessChannelMode(QProcess::MergedChannels);
    validator.start(QStringLiteral("desktop-file-validate"), {entryPath()});
    ASSERT_TRUE(validator.waitForFinished()) << validator.errorString().toStdString();
    EXPECT_EQ(validator.exitCode(), 0) << validator.readAll().toStdString();
}

TEST_F(XdgLoginItemTest, QuotesAwkwardPaths) {
    // The program that the entry starts is the running one: this one runs under another name.
    const QTemporaryDir place(QCoreApplication::applicationDirPath() + QStringLiteral("/link"));
    for (const char* name : {"with space", "quote\"s and 'more'", "100%u%", "$HOME", "back\\slash",
                             "`tick`", "\u00e4\u65e5", "a;b&c|d>e*f?g#h~i", "%1 %2"}) {
        SCOPED_TRACE(name);
        const QString path = place.filePath(QString::fromUtf8(name));
        std::filesystem::create_hard_link(
            QFile::encodeName(QCoreApplication::applicationFilePath()).toStdString(),
            QFile::encodeName(path).toStdString());
        QProcess self;
        self.setProcessChannelMode(QProcess::MergedChannels);
        self.start(
            path,
            {QStringLiteral("--gtest_filter=XdgLoginItemTest.WritesAnEntryThatStartsThisProgram")});
        ASSERT_TRUE(self.waitForFinished()) << self.errorString().toStdString();
        const QByteArray output = self.readAll();
        EXPECT_EQ(self.exitCode(), 0) << output.toStdString();
        EXPECT_TRUE(output.contains("1 test from")) << output.toStdString();
    }
}

TEST_F(XdgLoginItemTest, TakesTheEntryAway) {
    m_item.registerItem();
    m_item.unregisterItem();
    EXPECT_FALSE(m_item.isRegistered());
    EXPECT_FALSE(QFile::exists(entryPath()));
    EXPECT_NO_THROW(m_item.unregisterItem());
}

TEST_F(XdgLoginItemTest, HonoursWhatTheDesktopHasSwitchedOff) {
    struct Case {
        const char* line;
        bool registered;
    };
    const Case cases[] = {{"", true},
                          {"Hidden=true\n", false},
                          {"Hidden=false\n", true},
                          {"X-GNOME-Autostart-enabled=false\n", false},
                          {"X-GNOME-Autostart-enabled=true\n", true},
                          {"X-GNOME-Autostart-enabled=true\nHidden=true\n", false}};
    for (const Case& c : cases) {
        SCOPED_TRACE(c.line);
        writeEntry(QByteArray("[Desktop Entry]\nType=Application\nName=Snapvane\nExec=x\n") +
                   c.line);
        EXPECT_EQ(m_item.isRegistered(), c.registered);
    }
}

TEST_F(XdgLoginItemTest, RegistersAgainOverAnEntryThatWasSwitchedOff) {
    writeEntry("[Desktop Entry]\nType=Application\nName=Snapvane\nExec=x\nHidden=true\n");
    m_item.registerItem();
    EXPECT_TRUE(m_item.isRegistered());
    EXPECT_FALSE(entry().contains("Hidden"));
}

TEST_F(XdgLoginItemTest, SaysWhyItCannotRegister) {
    makeFile(configuration());
    try {
        m_item.registerItem();
        FAIL() << "nothing was thrown";
    } catch (const PlatformError& error) {
        EXPECT_EQ(error.localizedDescription(),
                  QStringLiteral("app.snapvane.Snapvane.desktop: Not a directory"));
    }
    EXPECT_FALSE(m_item.isRegistered());
}

TEST_F(XdgLoginItemTest, SaysWhyItCannotUnregister) {
    QDir().mkpath(entryPath() + QStringLiteral("/inner"));
    try {
        m_item.unregisterItem();
        FAIL() << "nothing was thrown";
    } catch (const PlatformError& error) {
        EXPECT_TRUE(error.localizedDescription().startsWith(
            QStringLiteral("app.snapvane.Snapvane.desktop: ")))
            << error.what();
        EXPECT_FALSE(error.localizedDescription().contains(QStringLiteral("Unknown error")))
            << error.what();
    }
}

} // namespace snapvane
