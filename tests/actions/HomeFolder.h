#pragma once

#include <QByteArray>
#include <QDir>
#include <QFile>
#include <QString>
#include <QTemporaryDir>

namespace snapvane::testing {

/// The user's home folder, empty, for as long as it lives. One at a time.
class HomeFolder {
public:
    HomeFolder() { qputenv("HOME", QFile::encodeName(m_folder.path())); }
    ~HomeFolder() { qputenv("HOME", m_before); }
    HomeFolder(const HomeFolder&) = delete;
    HomeFolder& operator=(const HomeFolder&) = delete;

    QString path() const { return m_folder.path(); }
    QString path(const char* relative) const {
        return m_folder.filePath(QString::fromUtf8(relative));
    }

    void makeFolder(const char* relative) const {
        QDir(path()).mkpath(QString::fromUtf8(relative));
    }
    void makeFile(const char* relative, const QByteArray& bytes = {}) const {
        QFile file(path(relative));
        if (file.open(QIODevice::WriteOnly)) {
            file.write(bytes);
        }
    }
    /// Nothing where there is no such file.
    QByteArray contents(const char* relative) const {
        QFile file(path(relative));
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    }

private:
    QByteArray m_before = qgetenv("HOME");
    QTemporaryDir m_folder;
};

} // namespace snapvane::testing
