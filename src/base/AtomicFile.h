#pragma once

#include <QByteArray>
#include <QRegularExpression>
#include <QString>

#include <system_error>

namespace snapvane {

/// Writes a file that appears whole or not at all, even when the program is killed or the power
/// fails meanwhile: the bytes go into a file beside its place, which has no name yet where the file
/// system allows that, are synced, and take the place of a file of that name. Permissions are what
/// the user's umask leaves. Nothing is left behind on failure; the result says what the system
/// said. Any thread; slow, as disks are.
std::error_code writeFileAtomically(const QString& path, const QByteArray& bytes);

/// Removes what a program that was killed in mid-write has left in a folder: the unfinished files
/// of those whose names match `finalName` as a whole. What somebody is writing at the moment stays,
/// as does everything else. Any thread.
void removeUnfinishedFiles(const QString& folder, const QRegularExpression& finalName);

} // namespace snapvane
