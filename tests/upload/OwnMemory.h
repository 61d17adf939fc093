#pragma once

#include <QByteArray>

namespace snapvane::testing {

/// How often the bytes stand in this process's writable memory. Given, and kept, with each bit the
/// other way round, so as not to find itself.
int countInOwnMemory(const QByteArray& invertedBytes);

/// With each bit the other way round.
QByteArray inverted(QByteArray bytes);

} // namespace snapvane::testing
