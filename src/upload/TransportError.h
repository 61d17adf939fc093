#pragma once

#include "base/LocalizedError.h"

#include <QAbstractSocket>

namespace snapvane {

/// A request that got no whole answer: no connection, no trust, no bytes for too long. The text is
/// the network library's own where it has one; no address is in it, for addresses may hold secrets.
class TransportError : public LocalizedError {
public:
    /// What ended a connection before its time, in the library's terms.
    static TransportError of(QAbstractSocket::SocketError code, const QString& libraryText);
    static TransportError timedOut();
    /// The program leaves before there is an answer.
    static TransportError abandoned();
    /// The address is none that a file could be sent to.
    static TransportError unsupportedAddress();

    QAbstractSocket::SocketError code() const { return m_code; }

private:
    TransportError(QAbstractSocket::SocketError code, const QString& description)
        : LocalizedError(description), m_code(code) {}

    QAbstractSocket::SocketError m_code;
};

} // namespace snapvane
