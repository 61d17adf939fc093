#include "FerryboxServer.h"

#include <QJsonDocument>

using namespace Qt::StringLiterals;

namespace snapvane::testing {

FerryboxServer::FerryboxServer(Faults faults, const Options& options)
    : m_faults(std::move(faults)),
      m_server([this](const RecordedRequest& request) { return handle(request); }, options) {}

QUrl FerryboxServer::uploadURL() const {
    return m_server.url(u"/bucket/file%20one?X-Signature=a%2Fb%2Bc%3D&X-Expires=60"_s);
}

QJsonObject FerryboxServer::presignAnswer(const QUrl& uploadURL) {
    return {{u"uploadUrl"_s, QString::fromUtf8(uploadURL.toEncoded())},
            {u"publicUrl"_s, publicURL().toString()},
            {u"s3Key"_s, u"uploads/abc123.png"_s},
            {u"shortId"_s, u"abc123"_s},
            {u"expiresIn"_s, 60}};
}

HttpPlan FerryboxServer::handle(const RecordedRequest& request) const {
    const QByteArray method = request.method();
    if (method == "POST" && request.target().endsWith("/presign")) {
        return m_faults.presign
                   ? m_faults.presign(request)
                   : answering(200, QJsonDocument(presignAnswer(uploadURL())).toJson());
    }
    if (method == "PUT" && request.target().startsWith("/bucket/")) {
        return m_faults.put ? m_faults.put(request) : answering(200);
    }
    return answering(404);
}

std::vector<RecordedRequest> FerryboxServer::requestsOf(const QByteArray& method) const {
    std::vector<RecordedRequest> found = m_server.requests();
    std::erase_if(found,
                  [&](const RecordedRequest& request) { return request.method() != method; });
    return found;
}

} // namespace snapvane::testing
