#pragma once

#include <QCoreApplication>

namespace snapvane {

/// The text for the user in the user's language; the source text is English. Every text that a user
/// reads goes through here; log texts, file names and stored values never do.
inline QString translated(const char* source) {
    return QCoreApplication::translate("Snapvane", source);
}

} // namespace snapvane
