#pragma once

#include <QByteArray>
#include <QString>
#include <QUrl>

namespace snapvane {

/// One request of an upload. What is not here is not sent, but for what HTTP itself needs.
struct HttpRequest {
    QByteArray method;
    /// Whom to connect to, and how: http or https, with a host.
    QUrl server;
    /// Path and query as they go into the request line.
    QByteArray target;
    QByteArray contentType;
    /// Empty for none. Whoever writes the head wipes it.
    QByteArray apiKey;
    QByteArray body;

    /// Asks for leave to upload a file of that name and size. Takes over the key: `key` shares its
    /// buffer with nobody who still needs it, and is wiped. Throws LocalizedError for a key that no
    /// header can carry.
    static HttpRequest presign(const QUrl& baseURL, const QString& filename, qint64 fileSize,
                               QString key);
    /// Puts the file where the service wants it, the address taken to the letter. Throws
    /// FerryboxUploadError for what is no URL, TransportError for one that leads anywhere but to a
    /// web server.
    static HttpRequest put(const QString& address, QByteArray data);

    /// Request line and headers. Wipes the key, in all copies of the request; the bytes that are
    /// given are for the caller to wipe.
    QByteArray takeHead();
};

} // namespace snapvane
