// What one step of a drag costs the program itself, without the display server.

#include "selection/SelectionPicture.h"

#include <benchmark/benchmark.h>

namespace snapvane {

namespace {

/// Takes everything and draws nothing.
class CountingCanvas : public OverlayCanvas {
public:
    void veil(const PixelRect&) override { ++calls; }
    void clear(const PixelRect&) override { ++calls; }
    void fill(const PixelRect&, const QColor&) override { ++calls; }
    void draw(PixelPoint, const QImage&) override { ++calls; }

    int calls = 0;
};

qint64 pixelsOf(const QRegion& region) {
    qint64 pixels = 0;
    for (const QRect& rect : region) {
        pixels += static_cast<qint64>(rect.width()) * rect.height();
    }
    return pixels;
}

void dragStep(benchmark::State& state) {
    const auto width = static_cast<int>(state.range(0));
    const Screen screen =
        ScreenMapping::layOut({{1, QStringLiteral("Bench"), {{0, 0}, {width, 2160}}, 1, {}}})
            .front();
    const auto pictureAt = [&screen](double corner) {
        return SelectionPicture::of(screen, {{400, 400}, {corner, corner / 2}}, screen.frame, 1.5);
    };
    double corner = 1000;
    SelectionPicture before = pictureAt(corner);
    CountingCanvas canvas;
    qint64 pixels = 0;
    for ([[maybe_unused]] auto iteration : state) {
        corner = corner > 2500 ? 1000 : corner + 4;
        const SelectionPicture after = pictureAt(corner);
        const QRegion dirty = SelectionPicture::difference(before, after);
        after.paint(canvas, dirty);
        pixels = pixelsOf(dirty);
        before = after;
    }
    state.counters["repainted pixels"] = static_cast<double>(pixels);
}
BENCHMARK(dragStep)->Arg(3840)->Arg(7680)->Unit(benchmark::kMicrosecond);

} // namespace

} // namespace snapvane
