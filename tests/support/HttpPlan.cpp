#include "HttpPlan.h"

namespace snapvane::testing {

QByteArray httpAnswer(int status, const QByteArray& body, const QByteArray& contentType) {
    return "HTTP/1.1 " + QByteArray::number(status) +
           " Reason\r\n"
           "Content-Type: " +
           contentType + "\r\nContent-Length: " + QByteArray::number(body.size()) +
           "\r\nConnection: close\r\n\r\n" + body;
}

HttpPlan answering(int status, const QByteArray& body, const QByteArray& contentType) {
    return sending(httpAnswer(status, body, contentType));
}

HttpPlan sending(const QByteArray& bytes) {
    return {{{.kind = HttpStep::Kind::Send, .bytes = bytes}}};
}

HttpPlan stalling(const QByteArray& bytesBefore) {
    return {
        {{.kind = HttpStep::Kind::Send, .bytes = bytesBefore}, {.kind = HttpStep::Kind::Stall}}};
}

HttpPlan resetting(const QByteArray& bytesBefore) {
    return {
        {{.kind = HttpStep::Kind::Send, .bytes = bytesBefore}, {.kind = HttpStep::Kind::Reset}}};
}

} // namespace snapvane::testing
