#pragma once

#include <QByteArray>
#include <QList>

#include <utility>

namespace snapvane {

/// Hands entries to the system's journal in its native protocol: one datagram an entry, a field a
/// line. Any thread.
class JournalSocket {
public:
    using Fields = QList<std::pair<QByteArray, QByteArray>>;

    /// `path` is where the journal listens.
    explicit JournalSocket(QByteArray path);

    /// True when there is a journal.
    bool exists() const;
    /// False when the journal did not take the entry, for example because it is too long.
    bool send(const Fields& fields) const;

    /// The fields as the journal wants them: "NAME=value", or, for a value of several lines, the
    /// name, the value's length as 64 bits with the lowest byte first, and the value. Pure.
    static QByteArray datagram(const Fields& fields);

private:
    QByteArray m_path;
};

} // namespace snapvane
