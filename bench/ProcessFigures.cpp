#include "ProcessFigures.h"

#include <QByteArray>
#include <QFile>
#include <QString>

#include <algorithm>

namespace snapvane::bench {

namespace {

QByteArray contentsOf(pid_t process, const char* name) {
    QFile file(QStringLiteral("/proc/%1/%2").arg(process).arg(QLatin1String(name)));
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

} // namespace

double cpuMilliseconds(pid_t process) {
    // The first field is the time on a processor in nanoseconds; threads that have ended count.
    const QByteArray figures = contentsOf(process, "schedstat");
    return figures.left(figures.indexOf(' ')).toDouble() / 1e6;
}

qint64 memoryKiB(pid_t process, const char* name) {
    for (const QByteArray& line : contentsOf(process, "smaps_rollup").split('\n')) {
        if (line.startsWith(QByteArray(name) + ':')) {
            return line.mid(line.indexOf(':') + 1).trimmed().split(' ').first().toLongLong();
        }
    }
    return 0;
}

double median(std::vector<double> values) {
    const auto middle = values.begin() + static_cast<std::ptrdiff_t>(values.size() / 2);
    std::nth_element(values.begin(), middle, values.end());
    return *middle;
}

} // namespace snapvane::bench
