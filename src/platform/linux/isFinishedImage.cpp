#include "isFinishedImage.h"

#include <QtEndian>

#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <cstring>
#include <optional>

namespace {

/// The bytes of a file in their order, read ahead a block at a time, with jumps.
class ByteReader final {
public:
    ByteReader(int descriptor, off_t start) : m_descriptor(descriptor), m_nextBlock(start) {}

    /// None at the end of the file, or where it can't be read.
    std::optional<uchar> next()
    {
        if (m_position == m_end && !fill()) {
            return std::nullopt;
        }
        return m_block[m_position++];
    }

    /// Goes on behind the next byte of that value; false if there is none.
    bool skipBehind(uchar value)
    {
        while (m_position < m_end || fill()) {
            const uchar *const from = m_block.data() + m_position;
            const void *const found = std::memchr(from, value, m_end - m_position);
            if (found != nullptr) {
                m_position += static_cast<size_t>(static_cast<const uchar *>(found) - from) + 1;
                return true;
            }
            m_position = m_end;
        }
        return false;
    }

    void skip(off_t count)
    {
        const auto ahead = static_cast<off_t>(m_end - m_position);
        if (count <= ahead) {
            m_position += static_cast<size_t>(count);
        } else {
            m_nextBlock += count - ahead;
            m_position = m_end;
        }
    }

private:
    bool fill()
    {
        const ssize_t count = ::pread(m_descriptor, m_block.data(), m_block.size(), m_nextBlock);
        m_position = 0;
        m_end = count > 0 ? static_cast<size_t>(count) : 0;
        m_nextBlock += static_cast<off_t>(m_end);
        return m_end > 0;
    }

    int m_descriptor;
    off_t m_nextBlock;
    std::array<uchar, 16384> m_block;
    size_t m_position = 0;
    size_t m_end = 0;
};

/// Walks the chunks (length, type, contents, checksum) to IEND.
bool isFinishedPng(int descriptor, off_t fileSize)
{
    constexpr off_t signatureSize = 8;
    constexpr off_t chunkOverhead = 12;
    off_t offset = signatureSize;
    while (offset + chunkOverhead <= fileSize) {
        std::array<uchar, 8> header = {};
        if (::pread(descriptor, header.data(), header.size(), offset) != ssize_t(header.size())) {
            return false;
        }
        if (QByteArrayView(header).sliced(4) == QByteArrayView("IEND")) {
            return true;
        }
        offset += chunkOverhead + qFromBigEndian<quint32>(header.data());
    }
    return false;
}

/// Walks the segments and the entropy-coded data between them to EOI. An embedded thumbnail has an EOI too,
/// inside a segment that is jumped over; what may follow EOI in the file doesn't matter.
///
/// A progressive image comes in about ten scans. Each takes a decoder the time of the whole image, however
/// few bytes it has (libjpeg-turbo.org, "Two Issues with the JPEG Standard").
bool isFinishedJpeg(int descriptor)
{
    constexpr uchar markerPrefix = 0xFF;
    constexpr uchar endOfImage = 0xD9;
    constexpr uchar startOfScan = 0xDA;
    constexpr int mostScans = 100;
    int scans = 0;
    ByteReader bytes(descriptor, 2);
    while (bytes.skipBehind(markerPrefix)) {
        auto code = bytes.next();
        while (code == markerPrefix) {
            code = bytes.next();
        }
        if (code == endOfImage) {
            return true;
        }
        if (code == startOfScan && ++scans > mostScans) {
            return false;
        }
        // A data byte 0xFF is followed by a zero; TEM and RST0 to RST7 stand alone.
        const bool standsAlone = !code || *code <= 0x01 || (*code >= 0xD0 && *code <= 0xD7);
        if (!standsAlone) {
            const auto high = bytes.next();
            const auto low = bytes.next();
            const int length = high && low ? *high * 256 + *low : 0;
            if (length < 2) {
                return false;
            }
            bytes.skip(length - 2);
        }
    }
    return false;
}

/// The header of BMP and that of RIFF (WebP) say how long the file is.
bool hasDeclaredSize(int descriptor, off_t fileSize, off_t position, off_t uncounted)
{
    std::array<uchar, 4> field = {};
    return ::pread(descriptor, field.data(), field.size(), position) == ssize_t(field.size()) &&
           qFromLittleEndian<quint32>(field.data()) + uncounted <= fileSize;
}

} // namespace

bool isFinishedImage(int descriptor, ImageFormat format)
{
    struct stat status = {};
    if (::fstat(descriptor, &status) != 0) {
        return false;
    }
    switch (format) {
    case ImageFormat::Png:
        return isFinishedPng(descriptor, status.st_size);
    case ImageFormat::Jpeg:
        return isFinishedJpeg(descriptor);
    case ImageFormat::Bmp:
        return hasDeclaredSize(descriptor, status.st_size, 2, 0);
    case ImageFormat::WebP:
        return hasDeclaredSize(descriptor, status.st_size, 4, 8);
    case ImageFormat::Gif:
    case ImageFormat::Tiff:
        return true; // Their readers refuse what they can't read whole.
    }
    Q_UNREACHABLE();
}
