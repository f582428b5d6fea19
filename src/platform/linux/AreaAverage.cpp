#include "AreaAverage.h"

#include <QRgb>

#include <algorithm>
#include <array>
#include <bit>
#include <cstring>
#include <limits>

namespace {

/// Whole rows are added up in 16 bits, and such a sum's columns in 32.
int mostWholeRows(int width)
{
    constexpr quint32 byte = 255;
    const quint32 inColumn = std::numeric_limits<quint16>::max() / byte;
    const quint32 inRow = std::numeric_limits<quint32>::max() / byte / static_cast<quint32>(width);
    return static_cast<int>(std::min(inColumn, inRow));
}

/// Whether all of `count` pixels are.
bool areOpaque(const uchar *pixels, size_t count)
{
    quint32 common = ~0U; // the bits that all of them have, which is quickest for whole pixels
    for (size_t index = 0; index < count; ++index) {
        quint32 pixel = 0;
        std::memcpy(&pixel, pixels + index * 4, sizeof pixel);
        common &= pixel;
    }
    return std::bit_cast<std::array<uchar, 4>>(common)[3] == 255;
}

/// Color × alpha / 255, rounded as the toolkit rounds it, two channels at a time.
constexpr quint32 multipliedPair(quint32 colors, quint32 alpha)
{
    const quint32 products = colors * alpha;
    return ((products + ((products >> 8) & 0x00FF'00FF) + 0x0080'0080) >> 8) & 0x00FF'00FF;
}

} // namespace

AreaAverage::AreaAverage(QSize source, QSize target, Channels channels)
    : m_source(source),
      m_channels(channels),
      m_image(
          target, channels == Channels::Rgba ? QImage::Format_ARGB32_Premultiplied : QImage::Format_RGB32),
      m_wholeRows(static_cast<size_t>(source.width()) * static_cast<size_t>(channels)),
      m_mostWholeRows(mostWholeRows(source.width())),
      m_rowSums(static_cast<size_t>(target.width())),
      m_sums(m_rowSums.size()),
      m_missingHeight(source.height())
{
    Q_ASSERT(std::max(source.width(), source.height()) <= longestSide);
}

// Lengths are counted in fractions that make whole numbers of them all: across, a source pixel is as many
// units wide as the target has columns, and a target pixel as many as the source has; down likewise with
// rows. Source rows that lie wholly in one of the target's are first added to each other, which is quick, and
// then go through the columns together.
void AreaAverage::addRow(const uchar *row)
{
    if (m_channels == Channels::Rgba) {
        row = premultiplied(row);
    }
    int height = m_image.height();
    if (height <= m_missingHeight) {
        addWholeRow(row);
        m_missingHeight -= height;
        if (m_missingHeight == 0) {
            addWholeRows();
            finishRow();
        } else if (m_wholeRowCount == m_mostWholeRows) {
            addWholeRows();
        }
        return;
    }
    addWholeRows();
    sumColumns(row);
    while (height > 0) {
        const int part = std::min(height, m_missingHeight);
        addSums(static_cast<quint32>(part));
        height -= part;
        m_missingHeight -= part;
        if (m_missingHeight == 0) {
            finishRow();
        }
    }
}

const uchar *AreaAverage::premultiplied(const uchar *row)
{
    const auto count = static_cast<size_t>(m_source.width());
    if (areOpaque(row, count)) {
        return row;
    }
    m_premultiplied.resize(count * 4);
    uchar *to = m_premultiplied.data();
    for (const uchar *const end = row + count * 4; row < end; row += 4, to += 4) {
        quint32 pixel = 0;
        std::memcpy(&pixel, row, sizeof pixel);
        const quint32 alpha = row[3];
        pixel = multipliedPair(pixel & 0x00FF'00FF, alpha) | multipliedPair((pixel >> 8) & 0x00FF'00FF, alpha)
                                                                 << 8;
        std::memcpy(to, &pixel, sizeof pixel);
        to[3] = static_cast<uchar>(alpha);
    }
    return m_premultiplied.data();
}

void AreaAverage::addWholeRow(const uchar *row)
{
    quint16 *const sums = m_wholeRows.data();
    const size_t count = m_wholeRows.size();
    if (m_wholeRowCount == 0) {
        for (size_t index = 0; index < count; ++index) {
            sums[index] = row[index];
        }
    } else {
        for (size_t index = 0; index < count; ++index) {
            sums[index] = static_cast<quint16>(sums[index] + row[index]);
        }
    }
    ++m_wholeRowCount;
}

void AreaAverage::addWholeRows()
{
    if (m_wholeRowCount > 0) {
        sumColumns(m_wholeRows.data());
        addSums(static_cast<quint32>(m_image.height()));
        m_wholeRowCount = 0;
    }
}

template <typename Value> void AreaAverage::sumColumns(const Value *row)
{
    if (m_channels == Channels::Rgba) {
        sumColumnsOf<Channels::Rgba>(row);
    } else {
        sumColumnsOf<Channels::Rgb>(row);
    }
}

template <AreaAverage::Channels channels, typename Value> void AreaAverage::sumColumnsOf(const Value *pixel)
{
    constexpr auto channelCount = static_cast<size_t>(channels);
    const auto columnWidth = static_cast<quint32>(m_source.width());
    const auto pixelWidth = static_cast<quint32>(m_image.width());
    quint32 left = 0; // of the pixel before `pixel`
    for (Sums &sums : m_rowSums) {
        Sums sum = {};
        if (left > 0) {
            for (size_t channel = 0; channel < channelCount; ++channel) {
                sum[channel] = left * (pixel - channelCount)[channel];
            }
        }
        quint32 missing = columnWidth - left;
        Sums whole = {};
        for (; missing >= pixelWidth; missing -= pixelWidth, pixel += channelCount) {
            for (size_t channel = 0; channel < channelCount; ++channel) {
                whole[channel] += pixel[channel];
            }
        }
        for (size_t channel = 0; channel < channelCount; ++channel) {
            sum[channel] += pixelWidth * whole[channel];
        }
        left = 0;
        if (missing > 0) {
            for (size_t channel = 0; channel < channelCount; ++channel) {
                sum[channel] += missing * pixel[channel];
            }
            pixel += channelCount;
            left = pixelWidth - missing;
        }
        sums = sum;
    }
}

void AreaAverage::addSums(quint32 weight)
{
    // Of 32 bits each, which the processor multiplies two at a time.
    for (size_t column = 0; column < m_sums.size(); ++column) {
        for (size_t channel = 0; channel < m_sums[column].size(); ++channel) {
            m_sums[column][channel] += quint64{weight} * m_rowSums[column][channel];
        }
    }
}

void AreaAverage::finishRow()
{
    const quint64 area = static_cast<quint64>(m_source.width()) * static_cast<quint64>(m_source.height());
    // A division by multiplying is off by one at most, which is cheaper to put right than to divide.
    const double inverse = 1.0 / static_cast<double>(area);
    const auto mean = [area, inverse](quint64 sum) {
        const quint64 rounded = sum + area / 2;
        auto quotient = static_cast<quint64>(
            static_cast<qint64>(static_cast<double>(static_cast<qint64>(rounded)) * inverse));
        quotient -= quotient * area > rounded ? 1 : 0;
        quotient += (quotient + 1) * area <= rounded ? 1 : 0;
        return static_cast<int>(quotient);
    };
    const bool isOpaque = m_channels != Channels::Rgba;
    auto *const pixels = reinterpret_cast<QRgb *>(m_image.scanLine(m_nextRow));
    for (size_t column = 0; column < m_sums.size(); ++column) {
        const auto &[red, green, blue, alpha] = m_sums[column];
        pixels[column] = qRgba(mean(red), mean(green), mean(blue), isOpaque ? 255 : mean(alpha));
    }
    m_sums.assign(m_sums.size(), {});
    m_missingHeight = m_source.height();
    ++m_nextRow;
}
