#pragma once

#include "actions/CapturePreferences.h"
#include "base/PreferencesFile.h"
#include "base/UserDefaults.h"

namespace snapvane::testing {

/// The preferences as the program finds them when it starts with this file.
struct CapturePreferencesSession {
    explicit CapturePreferencesSession(const PreferencesFile& file)
        : defaults(file.path()), preferences(defaults) {}

    UserDefaults defaults;
    CapturePreferences preferences;
};

/// What the file says under a key, as it stands there; nothing when there is no such key.
inline std::optional<QByteArray> storedLine(const PreferencesFile& file, const QByteArray& key) {
    if (!QFile::exists(file.path())) {
        return std::nullopt;
    }
    for (const QByteArray& line : file.contents().split('\n')) {
        if (line.startsWith(key + '=')) {
            return line.mid(key.size() + 1);
        }
    }
    return std::nullopt;
}

} // namespace snapvane::testing
