#pragma once

#include <QByteArray>
#include <QDir>
#include <QFile>
#include <QString>
#include <QTemporaryDir>

namespace snapvane {

/// The place of a preferences file in a folder of its own, and what a test writes to it behind the
/// program's back.
class PreferencesFile {
public:
    QString path() const { return m_folder.filePath(QStringLiteral("Snapvane/Snapvane.conf")); }
    QString folder() const { return m_folder.filePath(QStringLiteral("Snapvane")); }
    QString backupPath() const { return path() + QStringLiteral(".bak"); }

    void write(const QByteArray& contents) const { write(path(), contents); }
    void write(const QString& filePath, const QByteArray& contents) const {
        QDir().mkpath(folder());
        QFile file(filePath);
        file.open(QIODevice::WriteOnly);
        file.write(contents);
    }

    QByteArray contents() const { return contents(path()); }
    static QByteArray contents(const QString& filePath) {
        QFile file(filePath);
        file.open(QIODevice::ReadOnly);
        return file.readAll();
    }

    QStringList files() const {
        return QDir(folder()).entryList(QDir::Files | QDir::Hidden, QDir::Name);
    }

private:
    QTemporaryDir m_folder;
};

} // namespace snapvane
