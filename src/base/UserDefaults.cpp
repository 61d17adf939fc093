#include "base/UserDefaults.h"

#include "base/AppIdentity.h"
#include "base/Log.h"

#include <QFile>
#include <QStandardPaths>

namespace snapvane {

namespace {

const Log& preferencesLog() {
    static const Log log("Preferences");
    return log;
}

QString standardPath() {
    const QString folder = QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation);
    return QStringLiteral("%1/%2/%2.conf").arg(folder, QLatin1String(productName));
}

QByteArray contentsOf(const QString& path) {
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

/// True when the file is none of ours: it holds zero bytes, or a line that is no section, entry,
/// comment or continuation of an entry. The library that reads it drops most of that without a word
/// and would write the file anew without it.
bool isDamaged(const QByteArray& contents) {
    if (contents.contains('\0')) {
        return true;
    }
    bool continues = false;
    for (const QByteArray& rawLine : contents.split('\n')) {
        const QByteArray line = rawLine.trimmed();
        const bool section = line.startsWith('[') && line.endsWith(']');
        const bool comment = line.startsWith(';') || line.startsWith('#');
        if (!continues && !line.isEmpty() && !section && !comment && line.indexOf('=') < 1) {
            return true;
        }
        continues = line.endsWith('\\') && !comment;
    }
    return false;
}

/// The first free name among file.bak, file.bak.1, …; empty when one of them holds that very
/// content already, as it does when the program starts again before anything was written.
QString backupPathFor(const QString& path) {
    const QByteArray contents = contentsOf(path);
    QString candidate = path + QStringLiteral(".bak");
    for (int number = 1; QFile::exists(candidate); ++number) {
        if (contentsOf(candidate) == contents) {
            return {};
        }
        candidate = QStringLiteral("%1.bak.%2").arg(path).arg(number);
    }
    return candidate;
}

} // namespace

UserDefaults::UserDefaults(const QString& path) : m_settings(path, QSettings::IniFormat) {
    if (m_settings.status() == QSettings::FormatError || isDamaged(contentsOf(path))) {
        keepDamagedFileAside();
    } else if (m_settings.status() == QSettings::AccessError) {
        preferencesLog().error(QStringLiteral("The preferences cannot be read: %1").arg(path));
    }
}

UserDefaults& UserDefaults::standard() {
    static UserDefaults defaults(standardPath());
    return defaults;
}

bool UserDefaults::contains(const QString& key) const {
    return m_settings.contains(key);
}

bool UserDefaults::boolean(const QString& key) const {
    const QString text = m_settings.value(key).toString().trimmed().toLower();
    bool isNumber = false;
    const double value = text.toDouble(&isNumber);
    if (isNumber) {
        return value != 0;
    }
    return text == QLatin1String("true") || text == QLatin1String("yes");
}

double UserDefaults::number(const QString& key) const {
    const QVariant value = m_settings.value(key);
    bool isNumber = false;
    const double number = value.toDouble(&isNumber);
    if (isNumber) {
        return std::isfinite(number) ? number : 0;
    }
    return value.toString() == QLatin1String("true") ? 1 : 0;
}

std::optional<QString> UserDefaults::string(const QString& key) const {
    const QVariant value = m_settings.value(key);
    if (!value.canConvert<QString>() || value.metaType() == QMetaType::fromType<QStringList>() ||
        value.metaType() == QMetaType::fromType<QByteArray>()) {
        return std::nullopt;
    }
    return value.toString();
}

std::optional<QStringList> UserDefaults::stringArray(const QString& key) const {
    if (!contains(key)) {
        return std::nullopt;
    }
    return m_settings.value(key).toStringList();
}

void UserDefaults::set(const QString& key, bool value) {
    write(key, value);
}

void UserDefaults::set(const QString& key, double value) {
    write(key, value);
}

void UserDefaults::set(const QString& key, const QString& value) {
    write(key, value);
}

void UserDefaults::set(const QString& key, const QStringList& value) {
    write(key, value);
}

void UserDefaults::remove(const QString& key) {
    m_settings.remove(key);
    flush();
}

void UserDefaults::write(const QString& key, const QVariant& value) {
    m_settings.setValue(key, value);
    flush();
}

void UserDefaults::flush() {
    m_settings.sync();
    if (m_settings.status() == QSettings::AccessError) {
        preferencesLog().error(
            QStringLiteral("The preferences cannot be written: %1").arg(m_settings.fileName()));
    }
}

void UserDefaults::keepDamagedFileAside() {
    const QString backup = backupPathFor(m_settings.fileName());
    if (backup.isEmpty()) {
        return;
    }
    if (QFile::copy(m_settings.fileName(), backup)) {
        preferencesLog().error(
            QStringLiteral("The preferences file is damaged; it is kept as %1").arg(backup));
    } else {
        preferencesLog().error(
            QStringLiteral("The preferences file is damaged: %1").arg(m_settings.fileName()));
    }
}

} // namespace snapvane
