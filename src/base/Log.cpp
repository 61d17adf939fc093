#include "base/Log.h"

#include "base/AppIdentity.h"
#include "base/JournalSocket.h"

#include <cstdio>
#include <syslog.h>
#include <unistd.h>

namespace snapvane {

namespace {

struct Level {
    const char* name;
    int syslogPriority;
};

Level levelOf(QtMsgType type) {
    switch (type) {
    case QtDebugMsg:
        return {"debug", LOG_DEBUG};
    case QtInfoMsg:
        return {"notice", LOG_NOTICE};
    case QtWarningMsg:
        return {"warning", LOG_WARNING};
    case QtCriticalMsg:
    case QtFatalMsg:
        break;
    }
    return {"error", LOG_ERR};
}

/// Where the handler sends to; set before it is installed.
JournalSocket& journal() {
    static JournalSocket socket{QByteArray()};
    return socket;
}

bool hasJournal() {
    // Qt's own switch for those who want to read along.
    return qEnvironmentVariableIntValue("QT_FORCE_STDERR_LOGGING") != 1 && journal().exists();
}

bool sendToJournal(const Level& level, const char* category, const QByteArray& text) {
    return journal().send({{"MESSAGE", text},
                           {"PRIORITY", QByteArray::number(level.syslogPriority)},
                           {"SUBSYSTEM", applicationIdentifier},
                           {"CATEGORY", category},
                           {"SYSLOG_IDENTIFIER", "snapvane"}});
}

void writeToStandardError(const Level& level, const char* category, const QByteArray& text) {
    // One call a line, so that lines of several threads do not mix.
    std::fprintf(stderr, "[%s] %s: %s\n", category, level.name, text.constData());
    std::fflush(stderr);
}

void handleMessage(QtMsgType type, const QMessageLogContext& context, const QString& message) {
    static const bool journalExists = hasJournal();
    static const bool terminal = isatty(STDERR_FILENO) == 1;
    const Level level = levelOf(type);
    const char* category = context.category != nullptr ? context.category : "default";
    const QByteArray text = message.toUtf8();
    const bool sent = journalExists && sendToJournal(level, category, text);
    // Somebody who started the program by hand wants to see what it says.
    if (!sent || terminal) {
        writeToStandardError(level, category, text);
    }
}

} // namespace

void Log::error(const QString& text) const {
    qCCritical(m_category).noquote() << text;
}

void Log::notice(const QString& text) const {
    qCInfo(m_category).noquote() << text;
}

void installLogHandler(const QByteArray& journalPath) {
    journal() = JournalSocket(journalPath);
    qInstallMessageHandler(handleMessage);
}

} // namespace snapvane
