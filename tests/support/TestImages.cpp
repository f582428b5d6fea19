#include "TestImages.h"

#include <QBuffer>
#include <QFile>
#include <QImage>
#include <QPoint>
#include <QtEndian>

#include <array>

namespace {

QByteArray bigEndian(quint32 number)
{
    QByteArray bytes(4, Qt::Uninitialized);
    qToBigEndian(number, bytes.data());
    return bytes;
}

/// CRC-32 as PNG wants it.
quint32 checksum(const QByteArray &bytes)
{
    static const auto table = [] {
        std::array<quint32, 256> entries = {};
        for (quint32 index = 0; index < entries.size(); ++index) {
            quint32 value = index;
            for (int bit = 0; bit < 8; ++bit) {
                value = (value & 1) != 0 ? 0xEDB88320U ^ (value >> 1) : value >> 1;
            }
            entries[index] = value;
        }
        return entries;
    }();
    quint32 value = ~0U;
    for (const char byte : bytes) {
        value = table[(value ^ static_cast<uchar>(byte)) & 0xFF] ^ (value >> 8);
    }
    return ~value;
}

/// Deflate writes Huffman codes from their highest bit on, into bytes that fill from their lowest.
class BitWriter {
public:
    void write(uint code, int bits)
    {
        for (int bit = bits - 1; bit >= 0; --bit) {
            m_current |= ((code >> bit) & 1) << m_filled;
            if (++m_filled == 8) {
                flush();
            }
        }
    }

    void flush()
    {
        if (m_filled > 0) {
            m_bytes += static_cast<char>(m_current);
        }
        m_current = 0;
        m_filled = 0;
    }

    [[nodiscard]] const QByteArray &bytes() const { return m_bytes; }

private:
    QByteArray m_bytes;
    uint m_current = 0;
    int m_filled = 0;
};

/// A zlib stream of `count` zeros (RFC 1950 and 1951): one literal and repetitions of it, in the fixed code.
QByteArray compressedZeros(qint64 count)
{
    constexpr int longestMatch = 258;
    BitWriter writer;
    writer.write(1, 1);    // the last block
    writer.write(0b10, 2); // fixed Huffman code; this field comes lowest bit first
    qint64 left = count;
    do {
        writer.write(0b00110000, 8); // literal 0
        --left;
    } while (left % longestMatch != 0);
    for (; left > 0; left -= longestMatch) {
        writer.write(0b11000101, 8); // length 258
        writer.write(0, 5);          // distance 1
    }
    writer.write(0, 7); // end of block
    writer.flush();
    const auto adler = static_cast<quint32>(count % 65521) << 16 | 1;
    return QByteArray::fromHex("7801") + writer.bytes() + bigEndian(adler);
}

QByteArray pngOfCompressedRows(
    const testImages::PngHeader &header, const QByteArray &compressedRows, const QByteArray &chunks = {})
{
    const QByteArray contents = bigEndian(static_cast<quint32>(header.size.width())) +
                                bigEndian(static_cast<quint32>(header.size.height())) +
                                static_cast<char>(header.bitDepth) + static_cast<char>(header.colorType) +
                                '\0' + '\0' + static_cast<char>(header.interlaced ? 1 : 0);
    return QByteArray::fromHex("89504e470d0a1a0a") + testImages::pngChunk("IHDR", contents) + chunks +
           testImages::pngChunk("IDAT", compressedRows) + testImages::pngChunk("IEND", {});
}

} // namespace

void testImages::writeFile(const QString &path, const QByteArray &bytes)
{
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly) || file.write(bytes) != bytes.size()) {
        qFatal("Can't write %s", qPrintable(path));
    }
}

QByteArray testImages::encoded(const QImage &image, const char *format)
{
    QBuffer buffer;
    if (!image.save(&buffer, format)) {
        qFatal("Can't encode an image as %s", format);
    }
    return buffer.data();
}

QByteArray testImages::png(const PngHeader &header, const QByteArray &rows, const QByteArray &chunks)
{
    constexpr int lengthBeforeStream = 4; // qCompress's own
    return pngOfCompressedRows(header, qCompress(rows).sliced(lengthBeforeStream), chunks);
}

QByteArray testImages::pngChunk(const QByteArray &type, const QByteArray &contents)
{
    return bigEndian(static_cast<quint32>(contents.size())) + type + contents +
           bigEndian(checksum(type + contents));
}

QByteArray testImages::blackPng(QSize size)
{
    const qint64 rowSize = 1 + qint64(size.width()) * 3;
    return pngOfCompressedRows({.size = size}, compressedZeros(rowSize * size.height()));
}

QByteArray testImages::interlacedBlackPng(QSize size, int channels)
{
    struct Pass {
        QPoint first;
        QPoint step;
    };

    constexpr std::array passes = {
        Pass{{0, 0}, {8, 8}}, Pass{{4, 0}, {8, 8}}, Pass{{0, 4}, {4, 8}}, Pass{{2, 0}, {4, 4}},
        Pass{{0, 2}, {2, 4}}, Pass{{1, 0}, {2, 2}}, Pass{{0, 1}, {1, 2}},
    };
    qint64 bytes = 0;
    for (const auto &[first, step] : passes) {
        const qint64 width = (size.width() - first.x() + step.x() - 1) / step.x();
        const qint64 height = (size.height() - first.y() + step.y() - 1) / step.y();
        bytes += width > 0 ? height * (1 + width * channels) : 0;
    }
    return pngOfCompressedRows(
        {.size = size, .colorType = channels == 1 ? 0 : 2, .interlaced = true}, compressedZeros(bytes));
}

QByteArray testImages::hollowPng(QSize size)
{
    return pngOfCompressedRows({.size = size}, compressedZeros(1000));
}

QByteArray testImages::withExif(const QByteArray &jpeg, int orientation, const QByteArray &thumbnailJpeg)
{
    // TIFF header, then a directory of one entry: tag 0x0112, of one SHORT.
    const QByteArray tiff = QByteArray::fromHex("4d4d002a00000008"
                                                "0001"
                                                "01120003"
                                                "00000001"
                                                "00") +
                            static_cast<char>(orientation) +
                            QByteArray::fromHex("0000"
                                                "00000000");
    const QByteArray contents = QByteArray("Exif\0\0", 6) + tiff + thumbnailJpeg;
    const QByteArray length = bigEndian(static_cast<quint32>(contents.size() + 2)).right(2);
    return jpeg.left(2) + QByteArray::fromHex("ffe1") + length + contents + jpeg.mid(2);
}
