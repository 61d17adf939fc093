#include "base/JournalSocket.h"

#include <QtEndian>

#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <unistd.h>

namespace snapvane {

JournalSocket::JournalSocket(QByteArray path) : m_path(std::move(path)) {}

bool JournalSocket::exists() const {
    struct stat info = {};
    return stat(m_path.constData(), &info) == 0 && S_ISSOCK(info.st_mode);
}

bool JournalSocket::send(const Fields& fields) const {
    sockaddr_un address = {};
    address.sun_family = AF_UNIX;
    if (static_cast<std::size_t>(m_path.size()) >= sizeof address.sun_path) {
        return false;
    }
    qstrncpy(address.sun_path, m_path.constData(), sizeof address.sun_path);
    const int number = socket(AF_UNIX, SOCK_DGRAM | SOCK_CLOEXEC, 0);
    if (number < 0) {
        return false;
    }
    const QByteArray entry = datagram(fields);
    // A journal that is behind must not hold the program up.
    const ssize_t sent =
        sendto(number, entry.constData(), static_cast<std::size_t>(entry.size()), MSG_DONTWAIT,
               reinterpret_cast<const sockaddr*>(&address), sizeof address);
    close(number);
    return sent == entry.size();
}

QByteArray JournalSocket::datagram(const Fields& fields) {
    QByteArray entry;
    for (const auto& [name, value] : fields) {
        entry += name;
        if (value.contains('\n')) {
            const quint64 length = qToLittleEndian(static_cast<quint64>(value.size()));
            entry += '\n';
            entry.append(reinterpret_cast<const char*>(&length), sizeof length);
        } else {
            entry += '=';
        }
        entry += value + '\n';
    }
    return entry;
}

} // namespace snapvane
