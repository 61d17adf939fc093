#pragma once

#include <QLoggingCategory>
#include <QString>

namespace snapvane {

/// The log of one component. Lines go to the journal with SUBSYSTEM (the application's identifier)
/// and CATEGORY fields where there is a journal, else to standard error as "[Category] level:
/// text". Log texts are never translated. Any thread.
class Log {
public:
    /// `category` must outlive the log; in practice it is a literal.
    explicit Log(const char* category) : m_category(category) {}

    void error(const QString& text) const;
    void notice(const QString& text) const;

private:
    QLoggingCategory m_category;
};

/// Sends everything that is logged through Qt, by us and by Qt itself, the way described above.
/// Called once by the program's entry. `journalPath` is where the journal listens.
void installLogHandler(const QByteArray& journalPath = "/run/systemd/journal/socket");

} // namespace snapvane
