#include "DesktopFolders.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <stdexcept>

namespace snapvane::testing {

namespace {

const char* const passedOn[] = {"PATH",          "TZ",           "ASAN_OPTIONS",
                                "UBSAN_OPTIONS", "LSAN_OPTIONS", "TSAN_OPTIONS"};

} // namespace

DesktopFolders::DesktopFolders() {
    for (const char* folder : {"home/Pictures", "config", "data", "cache", "runtime", "logs"}) {
        if (!QDir(m_root.path()).mkpath(QLatin1String(folder))) {
            throw std::runtime_error("cannot make the folders of the virtual desktop");
        }
    }
    QFile::setPermissions(runtime(), QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
    write(QStringLiteral("config/user-dirs.dirs"), "XDG_PICTURES_DIR=\"$HOME/Pictures\"\n");
}

QString DesktopFolders::log(const QString& name) const {
    return path(QStringLiteral("logs/%1.log").arg(name));
}

QProcessEnvironment DesktopFolders::environment() const {
    const QProcessEnvironment outer = QProcessEnvironment::systemEnvironment();
    QProcessEnvironment inner;
    for (const char* name : passedOn) {
        const QString key = QLatin1String(name);
        if (outer.contains(key)) {
            inner.insert(key, outer.value(key));
        }
    }
    inner.insert(QStringLiteral("LANG"), QStringLiteral("C.UTF-8"));
    inner.insert(QStringLiteral("HOME"), home());
    inner.insert(QStringLiteral("XDG_CONFIG_HOME"), config());
    inner.insert(QStringLiteral("XDG_DATA_HOME"), path(QStringLiteral("data")));
    inner.insert(QStringLiteral("XDG_CACHE_HOME"), path(QStringLiteral("cache")));
    inner.insert(QStringLiteral("XDG_RUNTIME_DIR"), runtime());
    inner.insert(QStringLiteral("XDG_SESSION_TYPE"), QStringLiteral("x11"));
    inner.insert(QStringLiteral("NO_AT_BRIDGE"), QStringLiteral("1"));
    // Qt's own switch for programs that would otherwise write to the journal.
    inner.insert(QStringLiteral("QT_FORCE_STDERR_LOGGING"), QStringLiteral("1"));
    return inner;
}

void DesktopFolders::write(const QString& relative, const QByteArray& contents) const {
    QDir().mkpath(QFileInfo(path(relative)).path());
    QFile file(path(relative));
    if (!file.open(QIODevice::WriteOnly) || file.write(contents) != contents.size()) {
        throw std::runtime_error("cannot write " + relative.toStdString());
    }
}

} // namespace snapvane::testing
