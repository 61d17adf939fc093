#include "capture/PngEncoding.h"

#include "capture/CaptureServiceError.h"

#include <spng.h>

#include <cstdlib>
#include <memory>
#include <vector>

namespace snapvane {

namespace {

// Readers built on libpng refuse more columns or rows unless they are told otherwise.
constexpr int longestSide = 1'000'000;
constexpr std::size_t bytesPerPixel = 3;
// Somebody waits for the file: the quickest level, and the filters that are quick to try.
constexpr int compressionLevel = 1;
constexpr int filters = SPNG_FILTER_CHOICE_NONE | SPNG_FILTER_CHOICE_SUB | SPNG_FILTER_CHOICE_UP;

struct ContextDeleter {
    void operator()(spng_ctx* context) const { spng_ctx_free(context); }
};
using Context = std::unique_ptr<spng_ctx, ContextDeleter>;

void require(int result) {
    if (result != SPNG_OK) {
        throw CaptureServiceError::pngEncodingFailed();
    }
}

Context beginPng(const QImage& image) {
    Context context(spng_ctx_new(SPNG_CTX_ENCODER));
    require(context ? SPNG_OK : SPNG_EMEM);
    spng_ihdr header = {};
    header.width = static_cast<std::uint32_t>(image.width());
    header.height = static_cast<std::uint32_t>(image.height());
    header.bit_depth = 8;
    // No alpha channel: a screen has none and it costs a fifth of the size.
    header.color_type = SPNG_COLOR_TYPE_TRUECOLOR;
    require(spng_set_option(context.get(), SPNG_ENCODE_TO_BUFFER, 1));
    require(spng_set_option(context.get(), SPNG_IMG_COMPRESSION_LEVEL, compressionLevel));
    require(spng_set_option(context.get(), SPNG_FILTER_CHOICE, filters));
    require(spng_set_ihdr(context.get(), &header));
    require(spng_encode_image(context.get(), nullptr, 0, SPNG_FMT_PNG,
                              SPNG_ENCODE_PROGRESSIVE | SPNG_ENCODE_FINALIZE));
    return context;
}

/// Row by row, so that no second copy of the whole picture is needed.
void encodeRows(spng_ctx& context, const QImage& rgbx) {
    std::vector<std::uint8_t> row(static_cast<std::size_t>(rgbx.width()) * bytesPerPixel);
    for (int y = 0; y < rgbx.height(); ++y) {
        const std::uint8_t* source = rgbx.constScanLine(y);
        for (std::size_t i = 0; i < row.size(); i += bytesPerPixel, source += 4) {
            row[i] = source[0];
            row[i + 1] = source[1];
            row[i + 2] = source[2];
        }
        const int result = spng_encode_row(&context, row.data(), row.size());
        // After the last row the library reports the end, which is no failure.
        require(result == SPNG_EOI && y == rgbx.height() - 1 ? SPNG_OK : result);
    }
}

QByteArray finishedPng(spng_ctx& context) {
    std::size_t length = 0;
    int error = SPNG_OK;
    const std::unique_ptr<void, decltype(&std::free)> buffer(
        spng_get_png_buffer(&context, &length, &error), &std::free);
    require(error);
    return {static_cast<const char*>(buffer.get()), static_cast<qsizetype>(length)};
}

} // namespace

QByteArray pngData(const QImage& image) {
    if (image.isNull() || image.width() > longestSide || image.height() > longestSide) {
        throw CaptureServiceError::pngEncodingFailed();
    }
    const QImage rgbx = image.convertToFormat(QImage::Format_RGBX8888);
    const Context context = beginPng(rgbx);
    encodeRows(*context, rgbx);
    return finishedPng(*context);
}

} // namespace snapvane
