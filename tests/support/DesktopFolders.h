#pragma once

#include <QProcessEnvironment>
#include <QString>
#include <QTemporaryDir>

namespace snapvane::testing {

/// The private home, configuration, data, cache and runtime folders of one virtual desktop, and the
/// files that its daemons write. All of it goes away with the object.
class DesktopFolders {
public:
    DesktopFolders();

    [[nodiscard]] QString home() const { return path(QStringLiteral("home")); }
    [[nodiscard]] QString config() const { return path(QStringLiteral("config")); }
    [[nodiscard]] QString runtime() const { return path(QStringLiteral("runtime")); }
    [[nodiscard]] QString pictures() const { return path(QStringLiteral("home/Pictures")); }
    /// Where the log of a daemon or of the program under test goes.
    [[nodiscard]] QString log(const QString& name) const;
    [[nodiscard]] QString path(const QString& relative) const { return m_root.filePath(relative); }
    [[nodiscard]] QProcessEnvironment environment() const;
    void write(const QString& relative, const QByteArray& contents) const;

private:
    QTemporaryDir m_root;
};

} // namespace snapvane::testing
