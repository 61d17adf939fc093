#include "upload/HttpRequest.h"

#include "base/LocalizedError.h"
#include "base/Translation.h"
#include "base/Wipe.h"
#include "upload/FerryboxUploadError.h"
#include "upload/TransportError.h"

#include <QJsonDocument>
#include <QJsonObject>

#include <algorithm>

namespace snapvane {

namespace {

bool isControlCharacter(char byte) {
    const auto code = static_cast<unsigned char>(byte);
    return (code < 0x20 && code != '\t') || code == 0x7f;
}

/// The path of `baseURL` with one more component.
QByteArray presignTarget(const QUrl& baseURL) {
    const QByteArray path = baseURL.path(QUrl::FullyEncoded).toLatin1();
    return path + (path.endsWith('/') ? "presign" : "/presign");
}

QByteArray presignBody(const QString& filename, qint64 fileSize) {
    const QJsonObject body = {{QStringLiteral("filename"), filename},
                              {QStringLiteral("contentType"), QStringLiteral("image/png")},
                              {QStringLiteral("fileSize"), fileSize}};
    return QJsonDocument(body).toJson(QJsonDocument::Compact);
}

/// Path and query of a valid address, letter by letter: a signature may be over them, and QUrl
/// writes some letters in another way. Only what would break the request line is encoded.
QByteArray literalTarget(const QString& address) {
    const QByteArray text = address.toUtf8();
    const qsizetype authority = text.indexOf("//") + 2;
    const auto isEnd = [](char letter) { return letter == '/' || letter == '?' || letter == '#'; };
    const auto start = std::find_if(text.begin() + authority, text.end(), isEnd);
    QByteArray target(start == text.end() || *start == '/' ? "" : "/");
    for (auto letter = start; letter != text.end() && *letter != '#'; ++letter) {
        const auto code = static_cast<unsigned char>(*letter);
        if (code > 0x20 && code < 0x7f) {
            target += *letter;
        } else {
            target += '%' + QByteArray(1, *letter).toHex().toUpper();
        }
    }
    return target.isEmpty() ? QByteArray("/") : target;
}

QByteArray hostHeader(const QUrl& server) {
    const QString host = server.host(QUrl::FullyEncoded);
    const QByteArray name = host.contains(u':') ? '[' + host.toLatin1() + ']' : host.toLatin1();
    const int usualPort = server.scheme() == QStringLiteral("https") ? 443 : 80;
    const int port = server.port(usualPort);
    return port == usualPort ? name : name + ':' + QByteArray::number(port);
}

} // namespace

HttpRequest HttpRequest::presign(const QUrl& baseURL, const QString& filename, qint64 fileSize,
                                 QString key) {
    HttpRequest request{.method = "POST",
                        .server = baseURL,
                        .target = presignTarget(baseURL),
                        .contentType = "application/json",
                        .apiKey = key.toUtf8(),
                        .body = presignBody(filename, fileSize)};
    wipe(key);
    if (std::ranges::any_of(request.apiKey, isControlCharacter)) {
        wipe(request.apiKey);
        throw LocalizedError(
            translated("The Ferrybox API key contains characters that cannot be sent."));
    }
    return request;
}

HttpRequest HttpRequest::put(const QString& address, QByteArray data) {
    const QUrl url(address, QUrl::TolerantMode);
    if (url.isEmpty() || !url.isValid()) {
        throw FerryboxUploadError::badResponse();
    }
    const bool isWeb =
        url.scheme() == QStringLiteral("https") || url.scheme() == QStringLiteral("http");
    if (!isWeb || url.host().isEmpty()) {
        throw TransportError::unsupportedAddress();
    }
    return {.method = "PUT",
            .server = url,
            .target = literalTarget(address),
            .contentType = "image/png",
            .apiKey = {},
            .body = std::move(data)};
}

QByteArray HttpRequest::takeHead() {
    const QByteArray length = QByteArray::number(body.size());
    QByteArray head;
    // Enough for all of it: growing would leave copies of the key behind.
    constexpr qsizetype names = 256;
    head.reserve(names + method.size() + target.size() + server.toEncoded().size() +
                 contentType.size() + apiKey.size());
    head += method + ' ' + target + " HTTP/1.1\r\nHost: " + hostHeader(server) +
            "\r\nContent-Type: " + contentType + "\r\nContent-Length: " + length + "\r\n";
    if (!apiKey.isEmpty()) {
        head += "X-API-Key: ";
        head += apiKey;
        head += "\r\n";
        wipe(apiKey);
    }
    // A connection that is kept may be closed by the other side just as it is used again; such a
    // request would have to be repeated, and nothing here is.
    head += "Connection: close\r\n\r\n";
    return head;
}

} // namespace snapvane
