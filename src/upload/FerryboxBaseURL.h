#pragma once

#include <QString>
#include <QUrl>

#include <optional>

namespace snapvane {

/// The service's address where it is one that the program may use: HTTPS, or HTTP to this very
/// machine; with a host, and without query, fragment and user information. Nothing for any other.
std::optional<QUrl> parsedFerryboxBaseURL(const QString& text);

/// The address that the program was built with. A malformed one is a program error. Any thread.
QUrl ferryboxBaseURL();

/// The text of that address. Its definition is what one program of a build differs in from another.
extern const char ferryboxBaseURLText[];

} // namespace snapvane
