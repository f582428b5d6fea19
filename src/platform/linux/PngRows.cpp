#include "PngRows.h"

#include "pngFilters.h"

#include <algorithm>
#include <cstring>

namespace {

constexpr size_t unpackedAtOnce = size_t(128) * 1024;

size_t bytesPerPixel(PngHeader::ColorType colorType)
{
    switch (colorType) {
    case PngHeader::Gray:
    case PngHeader::Palette:
        return 1;
    case PngHeader::GrayAlpha:
        return 2;
    case PngHeader::Rgb:
        return 3;
    case PngHeader::Rgba:
        return 4;
    }
    Q_UNREACHABLE();
}

} // namespace

bool PngRows::canRead(const PngHeader &header)
{
    return header.bitDepth == 8 && !header.isInterlaced &&
           std::max(header.size.width(), header.size.height()) <= AreaAverage::longestSide;
}

PngRows::PngRows(int descriptor) : m_chunks(descriptor)
{
}

bool PngRows::readHeader()
{
    if (!m_chunks.readSignature() || !readImageHeader()) {
        return false;
    }
    while (m_chunks.readHeader()) {
        switch (m_chunks.type()) {
        case PngChunks::type("PLTE"):
            if (!readPalette()) {
                return false;
            }
            break;
        case PngChunks::type("tRNS"):
            if (!readTransparency()) {
                return false;
            }
            break;
        case PngChunks::type("IDAT"):
            if (m_header.colorType == PngHeader::Palette && m_paletteSize == 0) {
                return false;
            }
            allocateRows();
            return true;
        default:
            if (!skipOther()) {
                return false;
            }
        }
    }
    return false;
}

const uchar *PngRows::readRow()
{
    const size_t stride = m_rowBytes + 1;
    if (m_end - m_begin < stride && !fill()) {
        return nullptr;
    }
    // The row above is right before this one's filter.
    uchar *const row = m_buffer.data() + m_begin + 1;
    const uchar *const above = m_buffer.data() + m_begin - m_rowBytes;
    m_begin += stride;
    const bool isFiltered =
        unfilterPngRow(row[-1], row, above, m_rowBytes, bytesPerPixel(m_header.colorType));
    return isFiltered ? expanded(row) : nullptr;
}

bool PngRows::readEnd()
{
    if (!m_pixelData->readEnd()) {
        return false;
    }
    while (m_chunks.type() != PngChunks::type("IEND")) {
        // libpng lets these two pass where they don't belong.
        const bool isMisplaced =
            m_chunks.type() == PngChunks::type("IDAT") || m_chunks.type() == PngChunks::type("PLTE");
        if (!(isMisplaced ? m_chunks.finish() : skipOther()) || !m_chunks.readHeader()) {
            return false;
        }
    }
    return m_chunks.finish();
}

bool PngRows::readImageHeader()
{
    std::array<uchar, PngHeader::length> contents = {};
    if (!m_chunks.readHeader() || m_chunks.type() != PngChunks::type("IHDR") ||
        m_chunks.left() != contents.size() || !m_chunks.read(contents.data(), contents.size()) ||
        !m_chunks.finish()) {
        return false;
    }
    const auto header = PngHeader::parse(contents);
    if (!header || !canRead(*header)) {
        return false;
    }
    m_header = *header;
    if (m_header.colorType == PngHeader::Gray) {
        for (size_t value = 0; value < m_colors.size(); ++value) {
            const auto gray = static_cast<uchar>(value);
            m_colors[value] = {gray, gray, gray};
        }
    }
    const bool hasAlpha = m_header.colorType == PngHeader::GrayAlpha || m_header.colorType == PngHeader::Rgba;
    m_channels = hasAlpha ? AreaAverage::Channels::Rgba : AreaAverage::Channels::Rgb;
    return true;
}

/// An index past the palette's end is black, as libpng has it.
bool PngRows::readPalette()
{
    constexpr size_t colorSize = 3;
    if (m_header.colorType != PngHeader::Palette) {
        return m_chunks.finish(); // a suggestion for screens of few colours
    }
    const size_t count = m_chunks.left() / colorSize;
    if (m_paletteSize > 0 || count == 0 || count > m_colors.size() || m_chunks.left() % colorSize != 0) {
        return false;
    }
    std::array<uchar, 256 * colorSize> contents;
    if (!m_chunks.read(contents.data(), count * colorSize) || !m_chunks.finish()) {
        return false;
    }
    for (size_t index = 0; index < count; ++index) {
        const uchar *const color = &contents[index * colorSize];
        m_colors[index] = {color[0], color[1], color[2]};
    }
    m_paletteSize = count;
    return true;
}

/// One that doesn't fit the image counts for nothing, as with libpng; so does a second one.
bool PngRows::readTransparency()
{
    const size_t length = m_chunks.left();
    const bool isPalette = m_header.colorType == PngHeader::Palette;
    const bool fits = isPalette                               ? length > 0 && length <= m_paletteSize
                      : m_header.colorType == PngHeader::Gray ? length == 2
                      : m_header.colorType == PngHeader::Rgb  ? length == 6
                                                              : false;
    if (!fits || m_channels == AreaAverage::Channels::Rgba) {
        return m_chunks.finish();
    }
    std::array<uchar, 256> contents;
    if (!m_chunks.read(contents.data(), length) || !m_chunks.finish()) {
        return false;
    }
    m_channels = AreaAverage::Channels::Rgba;
    if (isPalette) {
        for (size_t index = 0; index < length; ++index) {
            m_colors[index].alpha = contents[index];
        }
    } else if (m_header.colorType == PngHeader::Gray) {
        m_colors[contents[1]].alpha = 0; // 16 bits, of which these images use the lower 8
    } else {
        m_transparentColor = Color{contents[1], contents[3], contents[5]};
    }
    return true;
}

bool PngRows::skipOther()
{
    if (m_chunks.isCritical()) {
        return false;
    }
    m_chunks.jumpOver();
    return true;
}

void PngRows::allocateRows()
{
    const auto width = static_cast<size_t>(m_header.size.width());
    m_pixelData = std::make_unique<PngPixelData>(m_chunks);
    m_rowBytes = width * bytesPerPixel(m_header.colorType);
    const size_t stride = m_rowBytes + 1;
    m_missingBytes = static_cast<qint64>(stride) * m_header.size.height();
    const auto atOnce =
        static_cast<size_t>(std::min(static_cast<qint64>(std::max(stride, unpackedAtOnce)), m_missingBytes));
    // The first row has zeros above it.
    m_buffer.resize(m_rowBytes + atOnce + pngRowPadding);
    m_begin = m_rowBytes;
    m_end = m_begin;
    const bool isStoredAsAnswered =
        m_rowBytes == width * static_cast<size_t>(m_channels) && !m_transparentColor;
    if (!isStoredAsAnswered) {
        m_expanded.resize(width * static_cast<size_t>(m_channels));
    }
}

/// Moves the row above and the part of a row that is left to the front, and unpacks behind them.
bool PngRows::fill()
{
    const size_t kept = m_begin - m_rowBytes;
    std::memmove(m_buffer.data(), m_buffer.data() + kept, m_end - kept);
    m_begin = m_rowBytes;
    m_end -= kept;
    const size_t space = m_buffer.size() - pngRowPadding - m_end;
    const auto count = static_cast<size_t>(std::min(static_cast<qint64>(space), m_missingBytes));
    if (m_end + count - m_begin < m_rowBytes + 1 || !m_pixelData->read(m_buffer.data() + m_end, count)) {
        return false;
    }
    m_end += count;
    m_missingBytes -= static_cast<qint64>(count);
    return true;
}

const uchar *PngRows::expanded(const uchar *row)
{
    if (m_expanded.empty()) {
        return row;
    }
    uchar *to = m_expanded.data();
    const uchar *const end = row + m_rowBytes;
    switch (m_header.colorType) {
    case PngHeader::Gray:
    case PngHeader::Palette: {
        const auto size = static_cast<size_t>(m_channels);
        for (; row < end; ++row, to += size) {
            std::memcpy(to, &m_colors[*row], size);
        }
        break;
    }
    case PngHeader::GrayAlpha:
        for (; row < end; row += 2, to += 4) {
            const Color color = {row[0], row[0], row[0], row[1]};
            std::memcpy(to, &color, sizeof color);
        }
        break;
    case PngHeader::Rgb: {
        const Color key = m_transparentColor.value_or(Color{});
        for (; row < end; row += 3, to += 4) {
            const bool isTransparent = row[0] == key.red && row[1] == key.green && row[2] == key.blue;
            const Color color = {row[0], row[1], row[2], isTransparent ? uchar(0) : uchar(255)};
            std::memcpy(to, &color, sizeof color);
        }
        break;
    }
    case PngHeader::Rgba:
        Q_UNREACHABLE();
    }
    return m_expanded.data();
}
