#include "platform/xdg/XdgLoginItem.h"

#include "base/AppIdentity.h"
#include "base/AtomicFile.h"
#include "platform/PlatformError.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QSettings>
#include <QStandardPaths>

namespace snapvane::xdg {

namespace {

/// A path as the Exec key wants it: in quotes, with the characters escaped that mean something
/// inside, and the percent sign doubled.
QString quotedForExec(const QString& path) {
    QString escaped;
    for (const QChar character : path) {
        if (QStringLiteral("\"`$\\").contains(character)) {
            // Once for the quoting rule and once for the string type of the key.
            escaped += QStringLiteral("\\\\");
        }
        escaped += character;
        if (character == QLatin1Char('%') || character == QLatin1Char('\\')) {
            escaped += character;
        }
    }
    return QStringLiteral("\"%1\"").arg(escaped);
}

QByteArray entryText() {
    return QStringLiteral("[Desktop Entry]\n"
                          "Type=Application\n"
                          "Name=Snapvane\n"
                          "Exec=%1\n"
                          "Icon=%2\n"
                          "X-GNOME-Autostart-enabled=true\n")
        .arg(quotedForExec(QCoreApplication::applicationFilePath()),
             QLatin1String(applicationIdentifier))
        .toUtf8();
}

PlatformError failure(const QString& path, const QString& reason) {
    return PlatformError(QStringLiteral("%1: %2").arg(QFileInfo(path).fileName(), reason));
}

} // namespace

QString XdgLoginItem::entryPath() {
    return QStringLiteral("%1/autostart/%2.desktop")
        .arg(QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation),
             QLatin1String(applicationIdentifier));
}

void XdgLoginItem::registerItem() {
    const QString path = entryPath();
    QDir().mkpath(QFileInfo(path).path());
    if (const std::error_code error = writeFileAtomically(path, entryText())) {
        throw failure(path, QString::fromStdString(error.message()));
    }
}

void XdgLoginItem::unregisterItem() {
    QFile file(entryPath());
    if (file.exists() && !file.remove()) {
        throw failure(file.fileName(), file.errorString());
    }
}

bool XdgLoginItem::isRegistered() const {
    if (!QFile::exists(entryPath())) {
        return false;
    }
    QSettings entry(entryPath(), QSettings::IniFormat);
    entry.beginGroup(QStringLiteral("Desktop Entry"));
    return !entry.value(QStringLiteral("Hidden"), false).toBool() &&
           entry.value(QStringLiteral("X-GNOME-Autostart-enabled"), true).toBool();
}

} // namespace snapvane::xdg
