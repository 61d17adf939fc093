#include "upload/PresignResponse.h"

#include "base/Translation.h"

#include <QJsonDocument>
#include <QJsonObject>
#include <QJsonValue>
#include <QVariant>

#include <cmath>
#include <optional>

namespace snapvane {

namespace {

QJsonValue member(const QJsonObject& object, const QString& name) {
    const auto found = object.constFind(name);
    if (found == object.constEnd() || found->isNull()) {
        throw PresignDecodingError(
            translated("The response from Ferrybox lacks \u201c%1\u201d.").arg(name));
    }
    return *found;
}

QString text(const QJsonObject& object, const QString& name) {
    const QJsonValue value = member(object, name);
    if (!value.isString()) {
        throw PresignDecodingError(
            translated("\u201c%1\u201d in the response from Ferrybox is not a text.").arg(name));
    }
    return value.toString();
}

std::optional<std::int64_t> wholeNumber(const QJsonValue& value) {
    const QVariant number = value.toVariant();
    if (!value.isDouble() || number.typeId() == QMetaType::LongLong) {
        return value.isDouble() ? std::optional<std::int64_t>(number.toLongLong()) : std::nullopt;
    }
    const double real = value.toDouble();
    constexpr double limit = 9223372036854775808.0; // 2 to the power of 63, exactly
    if (!(real >= -limit && real < limit) || std::trunc(real) != real) {
        return std::nullopt;
    }
    return static_cast<std::int64_t>(real);
}

std::int64_t integer(const QJsonObject& object, const QString& name) {
    const std::optional<std::int64_t> number = wholeNumber(member(object, name));
    if (!number) {
        throw PresignDecodingError(
            translated("\u201c%1\u201d in the response from Ferrybox is not an integer.")
                .arg(name));
    }
    return *number;
}

} // namespace

PresignResponse PresignResponse::decoded(const QByteArray& json) {
    const QJsonDocument document = QJsonDocument::fromJson(json);
    if (!document.isObject()) {
        throw PresignDecodingError(translated("The response from Ferrybox is not a JSON object."));
    }
    const QJsonObject object = document.object();
    return {.uploadUrl = text(object, QStringLiteral("uploadUrl")),
            .publicUrl = text(object, QStringLiteral("publicUrl")),
            .s3Key = text(object, QStringLiteral("s3Key")),
            .shortId = text(object, QStringLiteral("shortId")),
            .expiresIn = integer(object, QStringLiteral("expiresIn"))};
}

} // namespace snapvane
