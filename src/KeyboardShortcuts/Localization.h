#pragma once

#include <QString>

namespace KeyboardShortcuts {

/// The module's text for a key of its own table, in the user's language. A key that is not in the
/// table stands for itself.
QString localized(const QString& key);

} // namespace KeyboardShortcuts
