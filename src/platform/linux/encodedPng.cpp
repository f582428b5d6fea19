#include "encodedPng.h"

#include "PngHeader.h"

#include <QtEndian>

#include <isa-l/crc.h>
#include <isa-l/igzip_lib.h>

#include <memory>
#include <vector>

namespace {

constexpr uchar filterUp = 2; // PNG specification, 9.2

void appendNumber(QByteArray &png, quint32 number)
{
    const quint32 bigEndian = qToBigEndian(number);
    png.append(reinterpret_cast<const char *>(&bigEndian), sizeof bigEndian);
}

void appendChunk(QByteArray &png, QByteArrayView type, QByteArrayView contents)
{
    appendNumber(png, static_cast<quint32>(contents.size()));
    const qsizetype begin = png.size();
    png.append(type).append(contents);
    const auto *const checked = reinterpret_cast<const uchar *>(png.constData() + begin);
    appendNumber(png, crc32_gzip_refl(0, checked, static_cast<uint64_t>(png.size() - begin)));
}

QByteArray header(QSize size, PngHeader::ColorType colorType)
{
    QByteArray contents;
    appendNumber(contents, static_cast<quint32>(size.width()));
    appendNumber(contents, static_cast<quint32>(size.height()));
    constexpr char bitDepth = 8;
    contents.append(bitDepth).append(static_cast<char>(colorType)).append(3, '\0');
    return contents;
}

/// Each row less the one above it, which leaves little of what screenshots have most, and is undone quickest.
std::vector<uchar> filteredRows(const QImage &image, size_t rowBytes)
{
    std::vector<uchar> rows;
    rows.reserve((rowBytes + 1) * static_cast<size_t>(image.height()));
    const std::vector<uchar> zeros(rowBytes);
    const uchar *above = zeros.data();
    for (int y = 0; y < image.height(); ++y) {
        const uchar *const row = image.constScanLine(y);
        rows.push_back(filterUp);
        for (size_t index = 0; index < rowBytes; ++index) {
            rows.push_back(static_cast<uchar>(row[index] - above[index]));
        }
        above = row;
    }
    return rows;
}

/// As a zlib stream; empty on failure.
QByteArray packed(std::vector<uchar> bytes)
{
    // What can't be packed is stored, in blocks with five bytes each.
    constexpr size_t streamOverhead = 4096;
    QByteArray to(
        static_cast<qsizetype>(bytes.size() + bytes.size() / 64 + streamOverhead), Qt::Uninitialized);
    std::vector<uint8_t> levelBuffer(ISAL_DEF_LVL1_DEFAULT);
    const auto stream = std::make_unique<isal_zstream>();
    isal_deflate_stateless_init(stream.get());
    stream->level = 1;
    stream->level_buf = levelBuffer.data();
    stream->level_buf_size = static_cast<uint32_t>(levelBuffer.size());
    stream->gzip_flag = IGZIP_ZLIB;
    stream->end_of_stream = 1;
    stream->next_in = bytes.data();
    stream->avail_in = static_cast<uint32_t>(bytes.size());
    stream->next_out = reinterpret_cast<uint8_t *>(to.data());
    stream->avail_out = static_cast<uint32_t>(to.size());
    if (isal_deflate_stateless(stream.get()) != COMP_OK) {
        return {};
    }
    to.truncate(stream->total_out);
    return to;
}

} // namespace

QByteArray encodedPng(const QImage &image, const QList<PngText> &texts)
{
    const bool hasAlpha = image.hasAlphaChannel();
    const QImage plain = image.convertToFormat(hasAlpha ? QImage::Format_RGBA8888 : QImage::Format_RGB888);
    const size_t rowBytes = static_cast<size_t>(plain.width()) * (hasAlpha ? 4 : 3);
    const QByteArray pixels = plain.isNull() ? QByteArray() : packed(filteredRows(plain, rowBytes));
    if (pixels.isEmpty()) {
        return {};
    }
    QByteArray png("\x89PNG\r\n\x1a\n");
    appendChunk(png, "IHDR", header(plain.size(), hasAlpha ? PngHeader::Rgba : PngHeader::Rgb));
    for (const PngText &text : texts) {
        appendChunk(png, "tEXt", QByteArray(text.keyword + '\0' + text.text));
    }
    appendChunk(png, "IDAT", pixels);
    appendChunk(png, "IEND", {});
    return png;
}
