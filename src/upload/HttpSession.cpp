#include "upload/HttpSession.h"

namespace snapvane {

QFuture<HttpAnswer> HttpSession::send(HttpRequest request, HttpTerms terms) {
    const auto* exchange = new HttpExchange(std::move(request), std::move(terms), this);
    return exchange->answer();
}

QSslConfiguration HttpSession::verifyingTrust() {
    QSslConfiguration trust = QSslConfiguration::defaultConfiguration();
    trust.setPeerVerifyMode(QSslSocket::VerifyPeer);
    return trust;
}

} // namespace snapvane
