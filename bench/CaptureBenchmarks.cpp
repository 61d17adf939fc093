// What happens to the pixels between the grab and the file.

#include "capture/PngEncoding.h"
#include "capture/StableCopy.h"

#include <QPainter>
#include <QRandomGenerator>

#include <benchmark/benchmark.h>

namespace snapvane {

namespace {

constexpr int fullHd = 1080;
constexpr int ultraHd = 2160;

QSize sizeOf(std::int64_t height) {
    return {static_cast<int>(height) * 16 / 9, static_cast<int>(height)};
}

/// Like a page of text: few colours, much white.
QImage textPicture(QSize size) {
    QImage image(size, QImage::Format_RGB32);
    image.fill(Qt::white);
    QPainter painter(&image);
    painter.setPen(Qt::black);
    for (int y = 20; y < size.height(); y += 20) {
        painter.drawText(10, y, QStringLiteral("The quick brown fox jumps over it. ").repeated(20));
    }
    return image;
}

/// Like a photograph: smooth, with a little noise everywhere.
QImage photoPicture(QSize size) {
    QImage image(size, QImage::Format_RGB32);
    QRandomGenerator random(1);
    for (int y = 0; y < size.height(); ++y) {
        auto* line = reinterpret_cast<QRgb*>(image.scanLine(y));
        for (int x = 0; x < size.width(); ++x) {
            const int noise = random.bounded(8);
            line[x] = qRgb((x * 200 / size.width()) + noise, (y * 200 / size.height()) + noise,
                           ((x + y) * 100 / size.width()) + noise);
        }
    }
    return image;
}

void stableCopy(benchmark::State& state) {
    const QImage picture = textPicture(sizeOf(state.range(0)));
    for ([[maybe_unused]] auto iteration : state) {
        benchmark::DoNotOptimize(makeStableCopy(picture));
    }
}
BENCHMARK(stableCopy)->Arg(fullHd)->Arg(ultraHd)->Unit(benchmark::kMillisecond);

void encode(benchmark::State& state, const QImage& picture) {
    qsizetype bytes = 0;
    for ([[maybe_unused]] auto iteration : state) {
        bytes = pngData(picture).size();
    }
    state.counters["bytes"] = static_cast<double>(bytes);
}

void encodeText(benchmark::State& state) {
    encode(state, makeStableCopy(textPicture(sizeOf(state.range(0)))));
}
BENCHMARK(encodeText)->Arg(fullHd)->Arg(ultraHd)->Unit(benchmark::kMillisecond);

void encodePhoto(benchmark::State& state) {
    encode(state, makeStableCopy(photoPicture(sizeOf(state.range(0)))));
}
BENCHMARK(encodePhoto)->Arg(fullHd)->Arg(ultraHd)->Unit(benchmark::kMillisecond);

} // namespace

} // namespace snapvane
