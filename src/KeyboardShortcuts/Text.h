#pragma once

#include <QString>

namespace KeyboardShortcuts {

/// The text with the first letter of each word in upper case and the others in lower case, in no
/// language in particular.
QString capitalized(const QString& text);

} // namespace KeyboardShortcuts
