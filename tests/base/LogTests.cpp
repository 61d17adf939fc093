#include "base/Log.h"

#include "base/JournalSocket.h"

#include <QTemporaryDir>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdio>
#include <cstdlib>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

namespace snapvane {

namespace {

using ::testing::ExitedWithCode;
using ::testing::HasSubstr;
using ::testing::Not;

// Everything below runs in a child process. What is wrong with the child's surroundings ends it
// with a code of its own.
constexpr int noSocket = 4;
constexpr int nothingReceived = 5;

void enterWorldWithoutJournal() {
    installLogHandler("/nowhere/journal");
}

/// Puts a journal in place that the test reads.
int enterWorldWithJournal() {
    static const QTemporaryDir folder;
    const QByteArray path = folder.filePath(QStringLiteral("journal")).toLocal8Bit();
    const int journal = socket(AF_UNIX, SOCK_DGRAM | SOCK_CLOEXEC, 0);
    sockaddr_un address = {};
    address.sun_family = AF_UNIX;
    qstrncpy(address.sun_path, path.constData(), sizeof address.sun_path);
    if (bind(journal, reinterpret_cast<const sockaddr*>(&address), sizeof address) != 0) {
        std::_Exit(noSocket);
    }
    installLogHandler(path);
    return journal;
}

/// Writes what came into the journal, one "journal: field" a line, and ends.
[[noreturn]] void reportJournal(int journal) {
    char buffer[4096];
    const ssize_t size = recv(journal, buffer, sizeof buffer, MSG_DONTWAIT);
    if (size < 0) {
        std::_Exit(nothingReceived);
    }
    for (const QByteArray& field : QByteArray(buffer, size).split('\n')) {
        std::fprintf(stderr, "journal: %s\n", field.constData());
    }
    std::_Exit(0);
}

} // namespace

TEST(LogDeathTest, WritesCategoryLevelAndTextWithoutAJournal) {
    EXPECT_EXIT(
        {
            enterWorldWithoutJournal();
            Log("CaptureCoordinator").error(QStringLiteral("Capture failed: \u2192 \"no\" %s"));
            Log("Overlay").notice(QStringLiteral("A screen has gone."));
            qWarning("from elsewhere");
            std::_Exit(0);
        },
        ExitedWithCode(0),
        ::testing::AllOf(
            HasSubstr("[CaptureCoordinator] error: Capture failed: \u2192 \"no\" %s\n"),
            HasSubstr("[Overlay] notice: A screen has gone.\n"),
            HasSubstr("[default] warning: from elsewhere\n")));
}

TEST(LogDeathTest, SendsAnErrorToTheJournalWithItsFields) {
    EXPECT_EXIT(
        {
            const int journal = enterWorldWithJournal();
            Log("AfterCaptureBatch").error(QStringLiteral("Save failed: x %s \u00e9"));
            reportJournal(journal);
        },
        ExitedWithCode(0),
        ::testing::AllOf(HasSubstr("journal: MESSAGE=Save failed: x %s \u00e9\n"),
                         HasSubstr("journal: PRIORITY=3\n"),
                         HasSubstr("journal: SUBSYSTEM=app.snapvane.Snapvane\n"),
                         HasSubstr("journal: CATEGORY=AfterCaptureBatch\n"),
                         HasSubstr("journal: SYSLOG_IDENTIFIER=snapvane\n"),
                         Not(HasSubstr("[AfterCaptureBatch]"))));
}

TEST(LogDeathTest, SendsANoticeToTheJournalAsOne) {
    EXPECT_EXIT(
        {
            const int journal = enterWorldWithJournal();
            Log("Overlay").notice(QStringLiteral("quiet"));
            reportJournal(journal);
        },
        ExitedWithCode(0),
        ::testing::AllOf(HasSubstr("journal: MESSAGE=quiet\n"), HasSubstr("journal: PRIORITY=5\n"),
                         HasSubstr("journal: CATEGORY=Overlay\n")));
}

TEST(LogDeathTest, FallsBackWhenTheJournalHasGone) {
    EXPECT_EXIT(
        {
            close(enterWorldWithJournal());
            Log("Overlay").error(QStringLiteral("still told"));
            std::_Exit(0);
        },
        ExitedWithCode(0), HasSubstr("[Overlay] error: still told\n"));
}

TEST(JournalSocket, WritesAFieldALine) {
    EXPECT_EQ(JournalSocket::datagram({{"MESSAGE", "text = \u00e9"}, {"PRIORITY", "3"}}),
              QByteArray("MESSAGE=text = \u00e9\nPRIORITY=3\n"));
}

TEST(JournalSocket, GivesTheLengthOfAValueOfSeveralLines) {
    EXPECT_EQ(JournalSocket::datagram({{"MESSAGE", "a\nb"}}),
              QByteArray("MESSAGE\n\x03\0\0\0\0\0\0\0a\nb\n", 20));
}

TEST(JournalSocket, RefusesWhatCannotBeSent) {
    const JournalSocket nobody("/nowhere/journal");
    EXPECT_FALSE(nobody.exists());
    EXPECT_FALSE(nobody.send({{"MESSAGE", "text"}}));
    EXPECT_FALSE(JournalSocket(QByteArray(300, 'x')).send({{"MESSAGE", "text"}}));
    EXPECT_FALSE(JournalSocket("/tmp").exists()) << "a folder is no journal";
}

} // namespace snapvane
