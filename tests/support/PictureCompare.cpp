#include "PictureCompare.h"

#include <QDir>

namespace snapvane::testing {

namespace {

struct Difference {
    qint64 count = 0;
    QPoint first;
};

Difference compare(const QImage& expected, const QImage& actual) {
    Difference difference;
    for (int y = 0; y < expected.height(); ++y) {
        const auto* one = reinterpret_cast<const QRgb*>(expected.constScanLine(y));
        const auto* other = reinterpret_cast<const QRgb*>(actual.constScanLine(y));
        for (int x = 0; x < expected.width(); ++x) {
            const bool same = ((one[x] ^ other[x]) & 0xffffffU) == 0;
            if (!same && difference.count++ == 0) {
                difference.first = {x, y};
            }
        }
    }
    return difference;
}

std::string colourName(const QImage& image, const QPoint& point) {
    return QColor(image.pixel(point)).name().toStdString();
}

void saveBoth(const QImage& expected, const QImage& actual, const QString& name) {
    const QString base = reportsFolder() + u'/' + name;
    expected.save(base + QStringLiteral(".expected.png"));
    actual.save(base + QStringLiteral(".actual.png"));
}

} // namespace

::testing::AssertionResult samePicture(const QImage& expected, const QImage& actual,
                                       const QString& name) {
    if (expected.isNull() || actual.isNull()) {
        return ::testing::AssertionFailure() << name.toStdString() << ": a picture is missing";
    }
    const QImage one = expected.convertToFormat(QImage::Format_RGB32);
    const QImage other = actual.convertToFormat(QImage::Format_RGB32);
    if (one.size() != other.size()) {
        saveBoth(one, other, name);
        return ::testing::AssertionFailure()
               << name.toStdString() << ": expected " << one.width() << "x" << one.height()
               << ", got " << other.width() << "x" << other.height();
    }
    const Difference difference = compare(one, other);
    if (difference.count == 0) {
        return ::testing::AssertionSuccess();
    }
    saveBoth(one, other, name);
    return ::testing::AssertionFailure()
           << name.toStdString() << ": " << difference.count << " of "
           << qint64(one.width()) * one.height() << " pixels differ, the first at "
           << difference.first.x() << "," << difference.first.y() << ": expected "
           << colourName(one, difference.first) << ", got " << colourName(other, difference.first);
}

QString reportsFolder() {
    QString folder = QStringLiteral(SNAPVANE_REPORTS_DIR);
    QDir().mkpath(folder);
    return folder;
}

} // namespace snapvane::testing
