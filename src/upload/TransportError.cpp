#include "upload/TransportError.h"

#include "base/Translation.h"

namespace snapvane {

TransportError TransportError::of(QAbstractSocket::SocketError code, const QString& libraryText) {
    if (code == QAbstractSocket::RemoteHostClosedError) {
        return {code, translated("The connection was lost.")};
    }
    if (code == QAbstractSocket::SocketTimeoutError) {
        // Of a server that does not even answer the call.
        return timedOut();
    }
    return {code, libraryText};
}

TransportError TransportError::timedOut() {
    return {QAbstractSocket::SocketTimeoutError, translated("The request timed out.")};
}

TransportError TransportError::abandoned() {
    return {QAbstractSocket::OperationError, translated("The upload was abandoned.")};
}

TransportError TransportError::unsupportedAddress() {
    return {QAbstractSocket::UnsupportedSocketOperationError,
            translated("Ferrybox gave an upload address that is not supported.")};
}

} // namespace snapvane
