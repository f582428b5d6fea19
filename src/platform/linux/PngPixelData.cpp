#include "PngPixelData.h"

#include <isa-l/igzip_lib.h>

#include <algorithm>
#include <array>

namespace {

constexpr size_t packedSize = size_t(32) * 1024;
constexpr quint32 imageData = PngChunks::type("IDAT");

} // namespace

PngPixelData::PngPixelData(PngChunks &chunks)
    : m_chunks(chunks),
      m_packed(std::make_unique_for_overwrite<uchar[]>(packedSize)),
      m_state(std::make_unique_for_overwrite<inflate_state>())
{
    isal_inflate_init(m_state.get());
    m_state->crc_flag = ISAL_ZLIB; // header and Adler-32 are the stream's own, and checked
}

PngPixelData::~PngPixelData() = default;

bool PngPixelData::read(uchar *bytes, size_t count)
{
    return unpack(bytes, count) == Outcome::Filled;
}

bool PngPixelData::readEnd()
{
    // As far as libpng looks for more.
    std::array<uchar, 1024> surplus;
    if (unpack(surplus.data(), surplus.size()) == Outcome::Damaged) {
        return false;
    }
    while (m_chunks.type() == imageData) {
        if (!m_chunks.finish() || !m_chunks.readHeader()) {
            return false;
        }
    }
    return true;
}

PngPixelData::Outcome PngPixelData::unpack(uchar *bytes, size_t count)
{
    m_state->next_out = bytes;
    m_state->avail_out = static_cast<uint32_t>(count);
    while (m_state->avail_out > 0) {
        if (m_state->block_state == ISAL_BLOCK_FINISH) {
            return Outcome::Ended;
        }
        if (m_state->avail_in == 0 && !fill()) {
            return Outcome::Damaged;
        }
        const uint32_t packedBefore = m_state->avail_in;
        const uint32_t spaceBefore = m_state->avail_out;
        if (isal_inflate(m_state.get()) != ISAL_DECOMP_OK) {
            return Outcome::Damaged;
        }
        const bool hasMoved = m_state->avail_in != packedBefore || m_state->avail_out != spaceBefore;
        if (!hasMoved && packedBefore == 0 && m_state->block_state != ISAL_BLOCK_FINISH) {
            return Outcome::Damaged; // more is needed than there is
        }
    }
    return Outcome::Filled;
}

/// The next packed bytes, of as many chunks as it takes. None is no failure: the unpacker may still hold
/// some.
bool PngPixelData::fill()
{
    size_t count = 0;
    while (count < packedSize) {
        if (!skipEmptyChunks()) {
            return false;
        }
        if (m_chunks.type() != imageData) {
            break;
        }
        const size_t part = std::min(m_chunks.left(), packedSize - count);
        if (!m_chunks.read(m_packed.get() + count, part)) {
            return false;
        }
        count += part;
    }
    if (!m_hasHeader && !checkHeader(count)) {
        return false;
    }
    m_state->next_in = m_packed.get();
    m_state->avail_in = static_cast<uint32_t>(count);
    return true;
}

/// What the unpacker takes more lightly than zlib does (RFC 1950, 2.2).
bool PngPixelData::checkHeader(size_t count)
{
    constexpr int deflate = 8;
    constexpr int largestWindow = 7;
    constexpr int presetDictionary = 0x20;
    m_hasHeader = count >= 2;
    return m_hasHeader && m_packed[0] % 16 == deflate && m_packed[0] / 16 <= largestWindow &&
           (m_packed[1] & presetDictionary) == 0 && (m_packed[0] * 256 + m_packed[1]) % 31 == 0;
}

bool PngPixelData::skipEmptyChunks()
{
    while (m_chunks.type() == imageData && m_chunks.left() == 0) {
        if (!m_chunks.finish() || !m_chunks.readHeader()) {
            return false;
        }
    }
    return true;
}
