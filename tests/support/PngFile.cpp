#include "PngFile.h"

#include <QtEndian>

#include <array>

namespace snapvane::testing {

namespace {

constexpr qsizetype chunkFrameSize = 12;

std::array<uint32_t, 256> makeChecksumTable() {
    std::array<uint32_t, 256> table = {};
    for (uint32_t index = 0; index < table.size(); ++index) {
        uint32_t value = index;
        for (int bit = 0; bit < 8; ++bit) {
            value = (value & 1U) != 0 ? 0xedb88320U ^ (value >> 1U) : value >> 1U;
        }
        table[index] = value;
    }
    return table;
}

uint32_t checksum(const QByteArray& bytes) {
    static const auto table = makeChecksumTable();
    uint32_t value = ~0U;
    for (const char byte : bytes) {
        value = table[(value ^ static_cast<uint8_t>(byte)) & 255U] ^ (value >> 8U);
    }
    return ~value;
}

uint32_t bigEndian(const QByteArray& bytes, qsizetype at) {
    return qFromBigEndian<uint32_t>(bytes.constData() + at);
}

PngHeader parseHeader(const QByteArray& data) {
    PngHeader header;
    header.size = QSize(static_cast<int>(bigEndian(data, 0)), static_cast<int>(bigEndian(data, 4)));
    header.bitDepth = static_cast<uint8_t>(data.at(8));
    header.colourType = static_cast<uint8_t>(data.at(9));
    return header;
}

} // namespace

std::optional<PngHeader> readWholePng(const QByteArray& bytes) {
    if (!bytes.startsWith("\x89PNG\r\n\x1a\n")) {
        return std::nullopt;
    }
    std::optional<PngHeader> header;
    qsizetype at = 8;
    while (bytes.size() - at >= chunkFrameSize) {
        const qsizetype length = bigEndian(bytes, at);
        if (length > bytes.size() - at - chunkFrameSize) {
            return std::nullopt;
        }
        const QByteArray typeAndData = bytes.mid(at + 4, length + 4);
        if (checksum(typeAndData) != bigEndian(bytes, at + 8 + length)) {
            return std::nullopt;
        }
        at += length + chunkFrameSize;
        if (!header) {
            if (!typeAndData.startsWith("IHDR") || length != 13) {
                return std::nullopt;
            }
            header = parseHeader(typeAndData.mid(4));
        } else if (typeAndData.startsWith("tRNS")) {
            header->hasTransparency = true;
        } else if (typeAndData.startsWith("IEND")) {
            return at == bytes.size() ? header : std::nullopt;
        }
    }
    return std::nullopt;
}

} // namespace snapvane::testing
