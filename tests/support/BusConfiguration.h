#pragma once

#include <QByteArray>
#include <QString>

namespace snapvane::testing {

/// What a session bus at that socket is started with. It knows no services to start: a test must
/// not depend on what is installed.
QByteArray busConfiguration(const QString& socketPath);

} // namespace snapvane::testing
