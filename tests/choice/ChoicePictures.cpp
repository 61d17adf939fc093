#include "choice/ChoicePictures.h"

#include "base/TestPalette.h"
#include "choice/ChoiceActionRow.h"
#include "choice/ChoiceThumbnail.h"
#include "choice/PostCaptureChoiceDimView.h"
#include "choice/PostCaptureChoiceKeyRootView.h"
#include "choice/PostCaptureChoiceView.h"
#include "platform/null/NullPlatform.h"

#include <QApplication>
#include <QDeadlineTimer>
#include <QEnterEvent>
#include <QPainter>
#include <QPalette>

#include <algorithm>
#include <cmath>

using namespace Qt::StringLiterals;

namespace snapvane::testing {

namespace {

using Look = ChoicePicture::Look;
using Thumbnail = ChoicePicture::Thumbnail;

constexpr QSize desktop(500, 660);

/// Something to recognise: a gradient, a light field with lines like text, a disc.
QImage scene(QSize size) {
    QImage image(size, QImage::Format_RGB32);
    QPainter painter(&image);
    painter.setRenderHint(QPainter::Antialiasing);
    QLinearGradient sky(0, 0, 0, size.height());
    sky.setColorAt(0, QColor(0x9f, 0xc5, 0xe8));
    sky.setColorAt(1, QColor(0x2d, 0x5f, 0x8b));
    painter.fillRect(image.rect(), sky);
    const QRectF page(size.width() * 0.1, size.height() * 0.15, size.width() * 0.5,
                      size.height() * 0.7);
    painter.fillRect(page, Qt::white);
    for (double y = page.top() + 12; y < page.bottom() - 8; y += 12) {
        painter.fillRect(QRectF(page.left() + 10, y, page.width() * 0.7, 4),
                         QColor(0x44, 0x44, 0x44));
    }
    painter.setBrush(QColor(0xf0, 0x8c, 0x00));
    painter.setPen(Qt::NoPen);
    const double radius = std::min(size.width(), size.height()) * 0.2;
    painter.drawEllipse(QPointF(size.width() * 0.8, size.height() * 0.5), radius, radius);
    return image;
}

PlatformImage thumbnail(Thumbnail kind, double scale) {
    const QSize points = kind == Thumbnail::Wide   ? QSize(1200, 300)
                         : kind == Thumbnail::Tall ? QSize(200, 700)
                                                   : QSize(9, 6);
    return {scene(points * scale),
            {static_cast<double>(points.width()), static_cast<double>(points.height())}};
}

void hover(ChoiceActionRow& row) {
    QEnterEvent event({5, 5}, {5, 5}, {5, 5});
    QApplication::sendEvent(&row, &event);
}

double meanDifference(const QImage& expected, const QImage& actual, const QRect& area) {
    double sum = 0;
    for (int y = area.top(); y <= area.bottom(); ++y) {
        for (int x = area.left(); x <= area.right(); ++x) {
            const QRgb a = expected.pixel(x, y);
            const QRgb b = actual.pixel(x, y);
            sum += std::abs(qRed(a) - qRed(b)) + std::abs(qGreen(a) - qGreen(b)) +
                   std::abs(qBlue(a) - qBlue(b));
        }
    }
    return sum / (3.0 * area.width() * area.height());
}

const char* nameOf(Thumbnail kind) {
    return kind == Thumbnail::Wide ? "wide" : kind == Thumbnail::Tall ? "tall" : "tiny";
}

} // namespace

QString ChoicePicture::name() const {
    QString text =
        u"%1-%2-%3"_s
            .arg(look == Look::Light ? u"light"_s : u"dark"_s, QString::fromUtf8(nameOf(thumbnail)))
            .arg(scale);
    if (hoveredRow >= 0) {
        text += u"-row%1"_s.arg(hoveredRow + 1);
    }
    return text;
}

std::vector<ChoicePicture> choicePictures() {
    std::vector<ChoicePicture> pictures;
    for (const Look look : {Look::Light, Look::Dark}) {
        for (const double scale : {1.0, 1.5, 2.0}) {
            pictures.push_back({look, Thumbnail::Wide, scale, -1});
            pictures.push_back({look, Thumbnail::Tall, scale, 1});
            pictures.push_back({look, Thumbnail::Tiny, scale, 4});
        }
    }
    return pictures;
}

QImage render(const ChoicePicture& picture) {
    const bool isDark = picture.look == Look::Dark;
    const TestPalette palette(isDark ? Qt::white : Qt::black,
                              isDark ? QColor(0x32, 0x32, 0x32) : QColor(0xef, 0xef, 0xef));
    QPalette accented = QGuiApplication::palette();
    accented.setColor(QPalette::Highlight, QColor(0x30, 0x8c, 0xc6));
    QGuiApplication::setPalette(accented);
    const null::NullKeyboardLayout layout;
    PostCaptureChoiceKeyRootView view(layout);
    view.resize(desktop);
    auto card = std::make_unique<PostCaptureChoiceView>(
        PostCaptureChoiceView::Contents{thumbnail(picture.thumbnail, picture.scale),
                                        u"Saved defaults (copy, upload, save)"_s,
                                        nullptr,
                                        {}});
    if (picture.hoveredRow >= 0) {
        hover(*card->rows()[static_cast<std::size_t>(picture.hoveredRow)]);
    }
    view.install(std::move(card));
    QImage backdrop(desktop * picture.scale, QImage::Format_RGB32);
    backdrop.fill(QColor(0x80, 0x98, 0xa8));
    backdrop.setDevicePixelRatio(picture.scale);
    view.dimView().setBackdrop(backdrop);
    return renderFinished(view, picture.scale);
}

bool finishThumbnails(QWidget& widget) {
    QList<ChoiceThumbnail*> thumbnails = widget.findChildren<ChoiceThumbnail*>();
    if (auto* itself = qobject_cast<ChoiceThumbnail*>(&widget)) {
        thumbnails.append(itself);
    }
    const QDeadlineTimer deadline(std::chrono::seconds(10));
    const auto areFinal = [&thumbnails] {
        return std::all_of(thumbnails.begin(), thumbnails.end(),
                           [](const ChoiceThumbnail* thumbnail) { return thumbnail->isFinal(); });
    };
    while (!areFinal() && !deadline.hasExpired()) {
        QCoreApplication::processEvents(QEventLoop::AllEvents, 5);
    }
    return areFinal();
}

QImage renderFinished(QWidget& widget, double scale) {
    QImage image(widget.size() * scale, QImage::Format_RGB32);
    image.setDevicePixelRatio(scale);
    for (int turn = 0; turn < 2; ++turn) {
        image.fill(Qt::white);
        widget.render(&image, {}, {}, QWidget::DrawChildren);
        // What it has just begun to scale.
        finishThumbnails(widget);
    }
    image.setDevicePixelRatio(1);
    return image;
}

Difference compare(const QImage& expected, const QImage& actual) {
    if (expected.size() != actual.size() || expected.isNull()) {
        return {255, 255};
    }
    constexpr int tile = 16;
    Difference difference;
    int tiles = 0;
    for (int y = 0; y < expected.height(); y += tile) {
        for (int x = 0; x < expected.width(); x += tile) {
            const QRect area = QRect(x, y, tile, tile).intersected(expected.rect());
            const double mean = meanDifference(expected, actual, area);
            difference.worstTile = std::max(difference.worstTile, mean);
            difference.mean += mean;
            ++tiles;
        }
    }
    difference.mean /= tiles;
    return difference;
}

} // namespace snapvane::testing
