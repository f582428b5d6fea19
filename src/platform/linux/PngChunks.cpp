#include "PngChunks.h"

#include <QtEndian>

#include <isa-l/crc.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstring>

namespace {

constexpr size_t bufferSize = size_t(64) * 1024;
constexpr size_t checksumSize = 4;
constexpr quint32 longestChunk = 0x7FFF'FFFF; // PNG specification, 5.3
constexpr std::array<uchar, 8> signature = {0x89, 'P', 'N', 'G', '\r', '\n', 0x1A, '\n'};

bool isLetter(uchar byte)
{
    return (byte >= 'A' && byte <= 'Z') || (byte >= 'a' && byte <= 'z');
}

} // namespace

PngChunks::PngChunks(int descriptor)
    : m_descriptor(descriptor),
      m_buffer(std::make_unique_for_overwrite<uchar[]>(bufferSize))
{
}

bool PngChunks::readSignature()
{
    std::array<uchar, signature.size()> bytes = {};
    return readBytes(bytes.data(), bytes.size()) && bytes == signature;
}

bool PngChunks::readHeader()
{
    quint32 length = 0;
    std::array<uchar, 4> name = {};
    if (!readNumber(length) || length > longestChunk || !readBytes(name.data(), name.size()) ||
        !std::ranges::all_of(name, isLetter)) {
        return false;
    }
    m_left = length;
    m_type = qFromBigEndian<quint32>(name.data());
    m_checksum = crc32_gzip_refl(0, name.data(), name.size());
    return true;
}

bool PngChunks::isCritical() const
{
    constexpr quint32 ancillaryBit = 1U << 29; // the first letter is a small one
    return (m_type & ancillaryBit) == 0;
}

bool PngChunks::read(uchar *bytes, size_t count)
{
    Q_ASSERT(count <= m_left);
    if (!readBytes(bytes, count)) {
        return false;
    }
    m_left -= count;
    m_checksum = crc32_gzip_refl(m_checksum, bytes, count);
    return true;
}

bool PngChunks::finish()
{
    while (m_left > 0) {
        if (m_begin == m_end && !fill()) {
            return false;
        }
        const size_t count = std::min(m_left, m_end - m_begin);
        m_checksum = crc32_gzip_refl(m_checksum, m_buffer.get() + m_begin, count);
        m_begin += count;
        m_left -= count;
    }
    quint32 checksum = 0;
    return readNumber(checksum) && checksum == m_checksum;
}

void PngChunks::jumpOver()
{
    const size_t count = m_left + checksumSize;
    const size_t ahead = std::min(count, m_end - m_begin);
    m_begin += ahead;
    m_position += static_cast<off_t>(count - ahead);
    m_left = 0;
}

bool PngChunks::readBytes(uchar *bytes, size_t count)
{
    while (count > 0) {
        if (m_begin == m_end && !fill()) {
            return false;
        }
        const size_t part = std::min(count, m_end - m_begin);
        std::memcpy(bytes, m_buffer.get() + m_begin, part);
        m_begin += part;
        bytes += part;
        count -= part;
    }
    return true;
}

bool PngChunks::readNumber(quint32 &number)
{
    std::array<uchar, 4> bytes = {};
    const bool read = readBytes(bytes.data(), bytes.size());
    number = qFromBigEndian<quint32>(bytes.data());
    return read;
}

bool PngChunks::fill()
{
    ssize_t count = 0;
    do {
        count = ::pread(m_descriptor, m_buffer.get(), bufferSize, m_position);
    } while (count < 0 && errno == EINTR);
    m_begin = 0;
    m_end = count > 0 ? static_cast<size_t>(count) : 0;
    m_position += static_cast<off_t>(m_end);
    return m_end > 0;
}
