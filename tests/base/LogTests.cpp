#include "base/Log.h"

#include "support/PrivateMount.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdio>
#include <cstdlib>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <unistd.h>

namespace snapvane {

namespace {

using ::testing::ExitedWithCode;
using ::testing::HasSubstr;
using ::testing::Not;

constexpr char journalSocket[] = "/run/systemd/journal/socket";

// Everything below runs in a child process. What is wrong with the child's surroundings ends it
// with a code of its own.
constexpr int noPrivateFolder = 3;
constexpr int noSocket = 4;
constexpr int nothingReceived = 5;

/// Hides this machine's own journal, and puts nothing in its place.
void enterWorldWithoutJournal() {
    if (!testing::mountTinyDisk("/run")) {
        std::_Exit(noPrivateFolder);
    }
    installLogHandler();
}

/// Puts a journal in place that the test reads.
int enterWorldWithJournal() {
    if (!testing::mountTinyDisk("/run")) {
        std::_Exit(noPrivateFolder);
    }
    mkdir("/run/systemd", 0755);
    mkdir("/run/systemd/journal", 0755);
    const int journal = socket(AF_UNIX, SOCK_DGRAM | SOCK_CLOEXEC, 0);
    sockaddr_un address = {};
    address.sun_family = AF_UNIX;
    qstrncpy(address.sun_path, journalSocket, sizeof address.sun_path);
    if (bind(journal, reinterpret_cast<const sockaddr*>(&address), sizeof address) != 0) {
        std::_Exit(noSocket);
    }
    installLogHandler();
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

} // namespace snapvane
