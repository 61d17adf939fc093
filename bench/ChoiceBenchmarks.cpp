// What the choice window costs the main thread before it can be seen.

#include "choice/ChoiceThumbnail.h"
#include "choice/PostCaptureChoiceKeyRootView.h"
#include "choice/PostCaptureChoiceView.h"
#include "platform/null/NullPlatform.h"

#include <benchmark/benchmark.h>

#include <random>

namespace snapvane {

namespace {

PlatformImage noise(int width, int height) {
    QImage bitmap(width, height, QImage::Format_RGB32);
    std::minstd_rand random;
    for (int y = 0; y < height; ++y) {
        auto* row = reinterpret_cast<QRgb*>(bitmap.scanLine(y));
        for (int x = 0; x < width; ++x) {
            row[x] = 0xff000000U | static_cast<QRgb>(random());
        }
    }
    return {bitmap, {static_cast<double>(width), static_cast<double>(height)}};
}

void paintThumbnail(benchmark::State& state) {
    const PlatformImage image =
        noise(static_cast<int>(state.range(0)), static_cast<int>(state.range(1)));
    for ([[maybe_unused]] auto iteration : state) {
        ChoiceThumbnail thumbnail(image);
        thumbnail.resize(thumbnail.sizeHint());
        benchmark::DoNotOptimize(thumbnail.grab());
    }
}

void makeAndPaintCard(benchmark::State& state) {
    const PlatformImage image = noise(640, 360);
    const null::NullKeyboardLayout layout;
    for ([[maybe_unused]] auto iteration : state) {
        PostCaptureChoiceKeyRootView view(layout);
        view.resize(1920, 1080);
        view.install(std::make_unique<PostCaptureChoiceView>(PostCaptureChoiceView::Contents{
            image, QStringLiteral("Saved defaults (copy)"), {}, {}}));
        benchmark::DoNotOptimize(view.grab());
    }
}

BENCHMARK(paintThumbnail)
    ->Name("choice/thumbnail")
    ->Args({640, 360})
    ->Args({1920, 1080})
    ->Args({3840, 2160})
    ->Args({7680, 4320})
    ->Unit(benchmark::kMillisecond);
BENCHMARK(makeAndPaintCard)->Name("choice/card")->Unit(benchmark::kMillisecond);

} // namespace

} // namespace snapvane
