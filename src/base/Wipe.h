#pragma once

#include <QByteArray>
#include <QString>

namespace snapvane {

/// Overwrites a secret in memory and leaves it empty. All that share its buffer are overwritten
/// with it, since a copy that merely shares would keep the secret; text that stands in the
/// program's own image is not. Whoever needs the secret for longer makes a deep copy first.
void wipe(QString& text);
void wipe(QByteArray& bytes);

/// Whether nobody else shares the buffer: wiping then harms no other owner.
bool isOnlyOwner(const QString& text);

} // namespace snapvane
