#include "AgentLog.h"

#include "PictureCompare.h"

#include <gtest/gtest.h>

#include <QFile>
#include <QFileInfo>
#include <QRegularExpression>
#include <QStringList>

using namespace Qt::StringLiterals;

namespace snapvane::testing {

std::string tail(const QString& log) {
    constexpr qsizetype lineCount = 25;
    const QStringList lines = log.split(u'\n');
    return lines.mid(std::max<qsizetype>(0, lines.size() - lineCount)).join(u'\n').toStdString();
}

bool hasSanitizerReport(const QString& log) {
    static const QRegularExpression report(
        u"(Address|Leak|Thread|UndefinedBehavior)Sanitizer|: runtime error: "_s);
    return log.contains(report);
}

void keepLog(const QString& path) {
    const ::testing::TestInfo* test = ::testing::UnitTest::GetInstance()->current_test_info();
    const QString name = test != nullptr ? u"%1.%2"_s.arg(QLatin1String(test->test_suite_name()),
                                                          QLatin1String(test->name()))
                                         : u"suite"_s;
    const QString target = u"%1/%2-%3"_s.arg(reportsFolder(), QString(name).replace(u'/', u'_'),
                                             QFileInfo(path).fileName());
    QFile::remove(target);
    QFile::copy(path, target);
}

qint64 numberAfter(const QString& path, const QByteArray& label) {
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly)) {
        return -1;
    }
    for (const QByteArray& line : file.readAll().split('\n')) {
        if (line.startsWith(label)) {
            return line.mid(label.size()).simplified().split(' ').value(0).toLongLong();
        }
    }
    return -1;
}

} // namespace snapvane::testing
