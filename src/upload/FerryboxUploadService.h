#pragma once

#include "actions/FerryboxUploading.h"

#include <QPointer>

#include <chrono>
#include <functional>
#include <optional>

namespace snapvane {

class HttpSession;
struct HttpAnswer;
struct HttpRequest;
struct PresignResponse;

/// The client of the Ferrybox service. One upload is two requests: the service is asked, with the
/// user's key, for an address; then the file is put there, without the key. Nothing is retried, no
/// redirect is followed, and nothing is kept from one upload to the next; any number may be under
/// way. Throws FerryboxUploadError, PresignDecodingError and TransportError. Main thread, which it
/// never blocks.
class FerryboxUploadService : public FerryboxUploading {
public:
    /// Gives the key as it is stored, or nothing when there is none; asked for every upload.
    using LoadKey = std::function<QCoro::Task<std::optional<QString>>()>;

    struct Limits {
        /// How long a request may go without a byte in either direction.
        std::chrono::milliseconds inactivity = std::chrono::seconds(60);
    };

    /// When `session` ends, which may be before the service does, uploads under way are abandoned
    /// and new ones fail.
    FerryboxUploadService(QUrl baseURL, HttpSession& session, LoadKey loadKey);
    FerryboxUploadService(QUrl baseURL, HttpSession& session, LoadKey loadKey, Limits limits);
    ~FerryboxUploadService() override;

    QCoro::Task<QUrl> uploadPNG(QByteArray data, QString filename) override;

private:
    QCoro::Task<PresignResponse> presign(QString filename, qint64 fileSize);
    QCoro::Task<> put(QString address, QByteArray data);
    QCoro::Task<HttpAnswer> send(HttpRequest request, qsizetype answerLimit);

    QUrl m_baseURL;
    QPointer<HttpSession> m_session;
    LoadKey m_loadKey;
    Limits m_limits;
};

} // namespace snapvane
