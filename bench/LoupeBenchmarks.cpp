// What drawing the loupe costs for one move of the pointer.

#include "selection/SelectionMagnifierView.h"

#include <benchmark/benchmark.h>

namespace snapvane {

namespace {

DisplaySnapshot noise() {
    QImage picture(3840, 2160, QImage::Format_RGBX8888);
    std::uint32_t value = 1;
    for (int y = 0; y < picture.height(); ++y) {
        auto* row = reinterpret_cast<QRgb*>(picture.scanLine(y));
        for (int x = 0; x < picture.width(); ++x) {
            value = value * 1664525 + 1013904223;
            row[x] = value | 0xff000000;
        }
    }
    return {{{0, 0}, {3840, 2160}}, 1, picture};
}

/// The scale is given in percent.
void loupeMove(benchmark::State& state, bool isTranslucent, GlobalSize selection) {
    SelectionMagnifierView view;
    view.snapshot = noise();
    view.selectionSize = selection;
    const double scale = static_cast<double>(state.range(0)) / 100;
    double place = 100;
    for ([[maybe_unused]] auto iteration : state) {
        place = place > 1900 ? 100 : place + 1;
        view.localPoint = {place, place};
        view.globalPoint = {place, place};
        benchmark::DoNotOptimize(view.draw(scale, isTranslucent).image.constBits());
    }
}
BENCHMARK_CAPTURE(loupeMove, opaque, false, {})->Arg(100)->Arg(200)->Unit(benchmark::kMicrosecond);
BENCHMARK_CAPTURE(loupeMove, translucent, true, {})
    ->Arg(100)
    ->Arg(200)
    ->Unit(benchmark::kMicrosecond);
BENCHMARK_CAPTURE(loupeMove, whileDragging, false, {640, 480})
    ->Arg(100)
    ->Unit(benchmark::kMicrosecond);

} // namespace

} // namespace snapvane
