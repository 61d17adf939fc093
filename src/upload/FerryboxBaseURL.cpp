#include "upload/FerryboxBaseURL.h"

#include "base/ProgramError.h"

namespace snapvane {

namespace {

bool isThisMachine(const QString& host) {
    return host == QStringLiteral("127.0.0.1") || host == QStringLiteral("::1") ||
           host == QStringLiteral("localhost");
}

} // namespace

std::optional<QUrl> parsedFerryboxBaseURL(const QString& text) {
    const QUrl url(text, QUrl::StrictMode);
    const bool isPlain = !url.hasQuery() && !url.hasFragment() && url.userInfo().isEmpty();
    const bool isSafe = url.scheme() == QStringLiteral("https") ||
                        (url.scheme() == QStringLiteral("http") && isThisMachine(url.host()));
    if (!url.isValid() || url.host().isEmpty() || !isPlain || !isSafe) {
        return std::nullopt;
    }
    return url;
}

QUrl ferryboxBaseURL() {
    const std::optional<QUrl> url = parsedFerryboxBaseURL(QString::fromUtf8(ferryboxBaseURLText));
    if (!url) {
        programError("the address of the upload service is malformed");
    }
    return *url;
}

} // namespace snapvane
