#pragma once

#include <QString>
#include <QVariantMap>

/// The program's version as it is shown.
namespace snapvane::QXAppVersion {

/// The information that the build compiled in, by the names under which desktops keep it.
QVariantMap informationDictionary();

/// "CFBundleShortVersionString" when it is there and is text, else "1.0".
QString shortVersion(const QVariantMap& information = informationDictionary());
/// "CFBundleVersion" when it is there and is text, else "1".
QString buildNumber(const QVariantMap& information = informationDictionary());

} // namespace snapvane::QXAppVersion
