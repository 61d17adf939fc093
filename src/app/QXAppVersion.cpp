#include "app/QXAppVersion.h"

namespace snapvane::QXAppVersion {

namespace {

const QString shortVersionKey = QStringLiteral("CFBundleShortVersionString");
const QString buildNumberKey = QStringLiteral("CFBundleVersion");

QString textOr(const QVariantMap& information, const QString& key, const QString& fallback) {
    const QVariant value = information.value(key);
    return value.metaType() == QMetaType::fromType<QString>() ? value.toString() : fallback;
}

} // namespace

QVariantMap informationDictionary() {
    return {{shortVersionKey, QStringLiteral(SNAPVANE_VERSION)}};
}

QString shortVersion(const QVariantMap& information) {
    return textOr(information, shortVersionKey, QStringLiteral("1.0"));
}

QString buildNumber(const QVariantMap& information) {
    return textOr(information, buildNumberKey, QStringLiteral("1"));
}

} // namespace snapvane::QXAppVersion
