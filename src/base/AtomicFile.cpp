#include "base/AtomicFile.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QRandomGenerator>

#include <cerrno>
#include <cstdio>

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

namespace snapvane {

namespace {

constexpr mode_t permissions = 0666;

std::error_code systemError() {
    return {errno, std::system_category()};
}

/// A file descriptor, closed with the object.
class Descriptor {
public:
    explicit Descriptor(int number) : m_number(number) {}
    ~Descriptor() {
        if (m_number >= 0) {
            ::close(m_number);
        }
    }
    Descriptor(const Descriptor&) = delete;
    Descriptor& operator=(const Descriptor&) = delete;

    int number() const { return m_number; }
    bool isOpen() const { return m_number >= 0; }

private:
    int m_number;
};

/// A name beside the file that nobody else uses, hidden from folder views.
QByteArray passingName(const QString& path) {
    const QFileInfo info(path);
    const QString name = QStringLiteral("%1/.%2.%3.part")
                             .arg(info.path(), info.fileName())
                             .arg(QRandomGenerator::global()->generate(), 8, 16, QLatin1Char('0'));
    return QFile::encodeName(name);
}

/// Tells those who clear up that the file is being written. Not every file system can.
bool lock(int file) {
    return ::flock(file, LOCK_EX | LOCK_NB) == 0;
}

std::error_code writeAndSync(int file, const QByteArray& bytes) {
    lock(file);
    qsizetype done = 0;
    while (done < bytes.size()) {
        const ssize_t written =
            ::write(file, bytes.constData() + done, static_cast<std::size_t>(bytes.size() - done));
        if (written < 0 && errno != EINTR) {
            return systemError();
        }
        done += std::max<ssize_t>(written, 0);
    }
    return ::fsync(file) == 0 ? std::error_code() : systemError();
}

/// Gives the file without a name its place. A link cannot replace a file, so it may take a passing
/// name first and be moved from there.
std::error_code giveName(int file, const QString& path) {
    const QByteArray link = "/proc/self/fd/" + QByteArray::number(file);
    const QByteArray target = QFile::encodeName(path);
    if (::linkat(AT_FDCWD, link.constData(), AT_FDCWD, target.constData(), AT_SYMLINK_FOLLOW) ==
        0) {
        return {};
    }
    if (errno != EEXIST) {
        return systemError();
    }
    const QByteArray passing = passingName(path);
    if (::linkat(AT_FDCWD, link.constData(), AT_FDCWD, passing.constData(), AT_SYMLINK_FOLLOW) !=
        0) {
        return systemError();
    }
    if (::rename(passing.constData(), target.constData()) == 0) {
        return {};
    }
    const std::error_code error = systemError();
    ::unlink(passing.constData());
    return error;
}

std::error_code tryUnderPassingName(const QString& path, const QByteArray& bytes) {
    const QByteArray passing = passingName(path);
    std::error_code error;
    {
        const Descriptor file(
            ::open(passing.constData(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, permissions));
        if (!file.isOpen()) {
            return systemError();
        }
        error = writeAndSync(file.number(), bytes);
        if (!error && ::rename(passing.constData(), QFile::encodeName(path).constData()) != 0) {
            error = systemError();
        }
    }
    if (error) {
        ::unlink(passing.constData());
    }
    return error;
}

/// For file systems that know no files without a name.
std::error_code writeUnderPassingName(const QString& path, const QByteArray& bytes) {
    const std::error_code error = tryUnderPassingName(path, bytes);
    // Somebody who clears up may have taken the file in the moment before it was locked.
    const bool wasTaken = error == std::errc::no_such_file_or_directory;
    return wasTaken ? tryUnderPassingName(path, bytes) : error;
}

/// Makes the new name itself last. Not every file system can; the file is whole either way.
void syncFolder(const QByteArray& folder) {
    const Descriptor directory(::open(folder.constData(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    if (directory.isOpen()) {
        ::fsync(directory.number());
    }
}

} // namespace

std::error_code writeFileAtomically(const QString& path, const QByteArray& bytes) {
    const QByteArray folder = QFile::encodeName(QFileInfo(path).path());
    std::error_code error;
    {
        const Descriptor file(
            ::open(folder.constData(), O_WRONLY | O_TMPFILE | O_CLOEXEC, permissions));
        const bool namelessKnown =
            file.isOpen() || (errno != EOPNOTSUPP && errno != EISDIR && errno != EINVAL);
        if (!namelessKnown) {
            error = writeUnderPassingName(path, bytes);
        } else if (!file.isOpen()) {
            error = systemError();
        } else {
            error = writeAndSync(file.number(), bytes);
            if (!error && giveName(file.number(), path)) {
                // The file system knows no links, or /proc is hidden from the program.
                error = writeUnderPassingName(path, bytes);
            }
        }
    }
    if (!error) {
        syncFolder(folder);
    }
    return error;
}

void removeUnfinishedFiles(const QString& folder, const QRegularExpression& finalName) {
    static const QRegularExpression passing(
        QRegularExpression::anchoredPattern(QStringLiteral("\\.(.+)\\.[0-9a-f]{8}\\.part")));
    const QRegularExpression whole(QRegularExpression::anchoredPattern(finalName.pattern()),
                                   finalName.patternOptions());
    const QDir directory(folder);
    for (const QString& name : directory.entryList(QDir::Files | QDir::Hidden | QDir::NoSymLinks)) {
        const auto match = passing.match(name);
        if (!match.hasMatch() || !whole.match(match.captured(1)).hasMatch()) {
            continue;
        }
        const QByteArray path = QFile::encodeName(directory.filePath(name));
        const Descriptor file(
            ::open(path.constData(), O_RDONLY | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC));
        if (file.isOpen() && lock(file.number())) {
            ::unlink(path.constData());
        }
    }
}

} // namespace snapvane
