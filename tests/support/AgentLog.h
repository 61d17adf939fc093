#pragma once

#include <QString>

#include <string>

namespace snapvane::testing {

/// The last lines of a log, for a failure message.
std::string tail(const QString& log);

bool hasSanitizerReport(const QString& log);

/// Copies a log into the build folder's reports/, under the running test's name.
void keepLog(const QString& path);

/// The number after `label` in one of the kernel's "label: number" files; -1 when it is not there.
qint64 numberAfter(const QString& path, const QByteArray& label);

} // namespace snapvane::testing
