#pragma once

#include "upload/HttpExchange.h"

namespace snapvane {

/// What all requests of the program go through: it owns those under way, and its end abandons them.
/// Main thread.
class HttpSession : public QObject {
    Q_OBJECT

public:
    /// Starts the exchange and gives its one answer to come.
    QFuture<HttpAnswer> send(HttpRequest request, HttpTerms terms);

    /// Verifies by the system's authorities. The first call loads the TLS library from the disk:
    /// for a thread of the pool.
    static QSslConfiguration verifyingTrust();
};

} // namespace snapvane
