#include "pngFilters.h"

#include <algorithm>
#include <bit>
#include <cstdlib>
#include <cstring>

#ifdef __SSE2__
#    include <emmintrin.h>
#endif

namespace {

constexpr bool isLittleEndian = std::endian::native == std::endian::little;

// A pixel of 3 or 4 bytes is computed at once. Each needs the one before it, so the way from pixel to pixel
// is what takes the time: all channels go it side by side in one register, from which they don't return.
using Bytes [[gnu::vector_size(16)]] = quint8;
using Words [[gnu::vector_size(16)]] = quint32;
using Lanes [[gnu::vector_size(16)]] = qint16;

constexpr Lanes lowByte = {255, 255, 255, 255, 255, 255, 255, 255};

Bytes load(const uchar *pixel)
{
    quint32 word = 0;
    std::memcpy(&word, pixel, sizeof word);
    return std::bit_cast<Bytes>(Words{word});
}

template <size_t size> void store(uchar *pixel, Bytes bytes)
{
    const quint32 word = std::bit_cast<Words>(bytes)[0];
    if constexpr (size == 3 && isLittleEndian) {
        // Without the detour through memory that compilers make of three bytes.
        const auto low = static_cast<quint16>(word);
        std::memcpy(pixel, &low, sizeof low);
        pixel[2] = static_cast<uchar>(word >> 16);
    } else {
        std::memcpy(pixel, &word, size);
    }
}

Lanes widened(Bytes bytes)
{
    if constexpr (isLittleEndian) {
        return std::bit_cast<Lanes>(
            __builtin_shufflevector(bytes, Bytes{}, 0, 16, 1, 17, 2, 18, 3, 19, 4, 20, 5, 21, 6, 22, 7, 23));
    } else {
        return std::bit_cast<Lanes>(
            __builtin_shufflevector(bytes, Bytes{}, 16, 0, 17, 1, 18, 2, 19, 3, 20, 4, 21, 5, 22, 6, 23, 7));
    }
}

/// Of lanes from 0 to 255.
Bytes narrowed(Lanes lanes)
{
#ifdef __SSE2__
    // What the shuffle below is in one instruction, which the compiler doesn't find.
    const auto words = std::bit_cast<__m128i>(lanes);
    return std::bit_cast<Bytes>(_mm_packus_epi16(words, words));
#else
    constexpr int low = isLittleEndian ? 0 : 1;
    return __builtin_shufflevector(
        std::bit_cast<Bytes>(lanes), Bytes{}, low, low + 2, low + 4, low + 6, low + 8, low + 10, low + 12,
        low + 14, 16, 17, 18, 19, 20, 21, 22, 23);
#endif
}

/// Whichever of `left`, `above` and `corner` is nearest to left + above - corner, of equally near ones the
/// first. Found by where the corner lies between the other two, which takes fewer steps from `left` on than
/// the three distances of the specification.
Lanes paeth(Lanes left, Lanes above, Lanes corner)
{
    const Lanes threshold = (corner * 3 - above) - left;
    const Lanes low = left < above ? left : above;
    const Lanes high = left < above ? above : left;
    const Lanes cornerOrLow = high > threshold ? corner : low;
    return low < threshold ? cornerOrLow : high;
}

int paeth(int left, int above, int corner)
{
    const int toLeft = std::abs(above - corner);
    const int toAbove = std::abs(left - corner);
    const int toCorner = std::abs(left + above - 2 * corner);
    if (toLeft <= toAbove && toLeft <= toCorner) {
        return left;
    }
    return toAbove <= toCorner ? above : corner;
}

void addAbove(uchar *row, const uchar *above, size_t rowBytes)
{
    for (size_t index = 0; index < rowBytes; ++index) {
        row[index] = static_cast<uchar>(row[index] + above[index]);
    }
}

/// Pixels of 3 and 4 bytes.
template <size_t size> struct WidePixels {
    static void addLeft(uchar *row, size_t rowBytes)
    {
        Bytes left = {};
        for (size_t index = 0; index < rowBytes; index += size) {
            left += load(row + index);
            store<size>(row + index, left);
        }
    }

    static void addAverage(uchar *row, const uchar *above, size_t rowBytes)
    {
        Lanes left = {};
        for (size_t index = 0; index < rowBytes; index += size) {
            const Lanes average = (left + widened(load(above + index))) >> 1;
            left = (average + widened(load(row + index))) & lowByte;
            store<size>(row + index, narrowed(left));
        }
    }

    static void addPaeth(uchar *row, const uchar *above, size_t rowBytes)
    {
        Lanes left = {};
        Lanes corner = {};
        for (size_t index = 0; index < rowBytes; index += size) {
            const Lanes up = widened(load(above + index));
            left = (paeth(left, up, corner) + widened(load(row + index))) & lowByte;
            corner = up;
            store<size>(row + index, narrowed(left));
        }
    }
};

/// Pixels of 1 and 2 bytes: a channel at a time.
template <size_t size> struct NarrowPixels {
    static void addLeft(uchar *row, size_t rowBytes)
    {
        for (size_t index = size; index < rowBytes; ++index) {
            row[index] = static_cast<uchar>(row[index] + row[index - size]);
        }
    }

    static void addAverage(uchar *row, const uchar *above, size_t rowBytes)
    {
        for (size_t index = 0; index < rowBytes; ++index) {
            const int left = index < size ? 0 : row[index - size];
            row[index] = static_cast<uchar>(row[index] + (left + above[index]) / 2);
        }
    }

    static void addPaeth(uchar *row, const uchar *above, size_t rowBytes)
    {
        for (size_t index = 0; index < rowBytes; ++index) {
            const int left = index < size ? 0 : row[index - size];
            const int corner = index < size ? 0 : above[index - size];
            row[index] = static_cast<uchar>(row[index] + paeth(left, above[index], corner));
        }
    }
};

enum Filter { None, Sub, Up, Average, Paeth };

template <typename Pixels> bool unfilter(int filter, uchar *row, const uchar *above, size_t rowBytes)
{
    switch (filter) {
    case None:
        return true;
    case Sub:
        Pixels::addLeft(row, rowBytes);
        return true;
    case Up:
        addAbove(row, above, rowBytes);
        return true;
    case Average:
        Pixels::addAverage(row, above, rowBytes);
        return true;
    case Paeth:
        Pixels::addPaeth(row, above, rowBytes);
        return true;
    default:
        return false;
    }
}

} // namespace

bool unfilterPngRow(int filter, uchar *row, const uchar *above, size_t rowBytes, size_t bytesPerPixel)
{
    switch (bytesPerPixel) {
    case 1:
        return unfilter<NarrowPixels<1>>(filter, row, above, rowBytes);
    case 2:
        return unfilter<NarrowPixels<2>>(filter, row, above, rowBytes);
    case 3:
        return unfilter<WidePixels<3>>(filter, row, above, rowBytes);
    case 4:
        return unfilter<WidePixels<4>>(filter, row, above, rowBytes);
    default:
        Q_UNREACHABLE();
    }
}
