#include "upload/FerryboxUploadService.h"

#include "base/Async.h"
#include "base/Wipe.h"
#include "upload/FerryboxUploadError.h"
#include "upload/HttpSession.h"
#include "upload/PresignResponse.h"

namespace snapvane {

namespace {

/// No presign answer comes near to this; one that does is something else.
constexpr qsizetype presignAnswerLimit = 1024 * 1024;

QUrl publicLink(const QString& address) {
    QUrl url(address, QUrl::TolerantMode);
    if (url.isEmpty() || !url.isValid()) {
        throw FerryboxUploadError::invalidPublicURL();
    }
    return url;
}

/// Checks what does not need the body.
void requirePresignSuccess(const HttpAnswer& answer) {
    if (answer.status == 0) {
        throw FerryboxUploadError::badResponse();
    }
    if (answer.status < 200 || answer.status > 299) {
        throw FerryboxUploadError::presignFailed(answer.status);
    }
    if (answer.bodyTooLong) {
        throw FerryboxUploadError::badResponse();
    }
}

} // namespace

FerryboxUploadService::FerryboxUploadService(QUrl baseURL, HttpSession& session, LoadKey loadKey)
    : FerryboxUploadService(std::move(baseURL), session, std::move(loadKey), Limits()) {}

FerryboxUploadService::FerryboxUploadService(QUrl baseURL, HttpSession& session, LoadKey loadKey,
                                             Limits limits)
    : m_baseURL(std::move(baseURL)), m_session(&session), m_loadKey(std::move(loadKey)),
      m_limits(limits) {}

FerryboxUploadService::~FerryboxUploadService() = default;

QCoro::Task<QUrl> FerryboxUploadService::uploadPNG(QByteArray data, QString filename) {
    auto presigning = presign(std::move(filename), data.size());
    const PresignResponse response = co_await presigning;
    auto putting = put(response.uploadUrl, std::move(data));
    co_await putting;
    co_return publicLink(response.publicUrl);
}

QCoro::Task<PresignResponse> FerryboxUploadService::presign(QString filename, qint64 fileSize) {
    auto loading = m_loadKey();
    std::optional<QString> key = co_await std::move(loading);
    if (!m_session) {
        throw TransportError::abandoned();
    }
    if (!key || key->isEmpty()) {
        throw FerryboxUploadError::missingAPIKey();
    }
    auto sending = send(HttpRequest::presign(m_baseURL, filename, fileSize, std::move(*key)),
                        presignAnswerLimit);
    const HttpAnswer answer = co_await sending;
    requirePresignSuccess(answer);
    auto decoding =
        runInBackground([body = answer.body] { return PresignResponse::decoded(body); });
    co_return co_await decoding;
}

QCoro::Task<> FerryboxUploadService::put(QString address, QByteArray data) {
    auto sending = send(HttpRequest::put(address, std::move(data)), 0);
    const HttpAnswer answer = co_await sending;
    if (answer.status != 200) {
        throw FerryboxUploadError::uploadFailed();
    }
}

QCoro::Task<HttpAnswer> FerryboxUploadService::send(HttpRequest request, qsizetype answerLimit) {
    HttpTerms terms{.inactivityLimit = m_limits.inactivity, .bodyLimit = answerLimit, .trust = {}};
    if (request.server.scheme() == QStringLiteral("https")) {
        auto preparing = runInBackground(HttpSession::verifyingTrust);
        terms.trust = co_await preparing;
    }
    if (!m_session) {
        wipe(request.apiKey);
        throw TransportError::abandoned();
    }
    QFuture<HttpAnswer> answering = m_session->send(std::move(request), std::move(terms));
    HttpAnswer answer = co_await answering;
    if (answer.failure) {
        throw TransportError(*answer.failure);
    }
    co_return answer;
}

} // namespace snapvane
