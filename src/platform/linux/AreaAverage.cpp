#include "AreaAverage.h"

#include <QRgb>

#include <algorithm>

namespace {

/// `color` × `alpha` / 255, rounded as the toolkit rounds it.
constexpr quint32 premultiplied(quint32 color, quint32 alpha)
{
    const quint32 product = color * alpha;
    return (product + (product >> 8) + 0x80) >> 8;
}

} // namespace

AreaAverage::AreaAverage(QSize source, QSize target, Channels channels)
    : m_source(source),
      m_channels(channels),
      m_image(
          target, channels == Channels::Rgba ? QImage::Format_ARGB32_Premultiplied : QImage::Format_RGB32),
      m_rowSums(static_cast<size_t>(target.width())),
      m_sums(m_rowSums.size()),
      m_missingHeight(source.height())
{
    Q_ASSERT(std::max(source.width(), source.height()) <= longestSide);
}

// Lengths are counted in fractions that make whole numbers of them all: across, a source pixel is as many
// units wide as the target has columns, and a target pixel as many as the source has; down likewise with
// rows.
void AreaAverage::addRow(const uchar *row)
{
    if (m_channels == Channels::Rgba) {
        sumColumns<Channels::Rgba>(row);
    } else {
        sumColumns<Channels::Rgb>(row);
    }
    int height = m_image.height();
    while (height > 0) {
        const int part = std::min(height, m_missingHeight);
        addSums(static_cast<quint64>(part));
        height -= part;
        m_missingHeight -= part;
        if (m_missingHeight == 0) {
            finishRow();
        }
    }
}

template <AreaAverage::Channels channels> void AreaAverage::sumColumns(const uchar *pixel)
{
    const auto pixelWidth = static_cast<quint32>(m_image.width());
    quint32 left = pixelWidth; // of the current pixel
    for (Sums &sums : m_rowSums) {
        Sums sum = {};
        auto missing = static_cast<quint32>(m_source.width());
        while (missing > 0) {
            const quint32 part = std::min(missing, left);
            if constexpr (channels == Channels::Rgba) {
                const quint32 alpha = pixel[3];
                sum[0] += part * premultiplied(pixel[0], alpha);
                sum[1] += part * premultiplied(pixel[1], alpha);
                sum[2] += part * premultiplied(pixel[2], alpha);
                sum[3] += part * alpha;
            } else {
                sum[0] += part * pixel[0];
                sum[1] += part * pixel[1];
                sum[2] += part * pixel[2];
            }
            missing -= part;
            left -= part;
            if (left == 0) {
                pixel += static_cast<int>(channels);
                left = pixelWidth;
            }
        }
        sums = sum;
    }
}

void AreaAverage::addSums(quint64 weight)
{
    for (size_t column = 0; column < m_sums.size(); ++column) {
        for (size_t channel = 0; channel < m_sums[column].size(); ++channel) {
            m_sums[column][channel] += weight * m_rowSums[column][channel];
        }
    }
}

void AreaAverage::finishRow()
{
    const quint64 area = static_cast<quint64>(m_source.width()) * static_cast<quint64>(m_source.height());
    const auto mean = [area](quint64 sum) { return static_cast<int>((sum + area / 2) / area); };
    auto *const pixels = reinterpret_cast<QRgb *>(m_image.scanLine(m_nextRow));
    for (size_t column = 0; column < m_sums.size(); ++column) {
        const auto &[red, green, blue, alpha] = m_sums[column];
        pixels[column] =
            qRgba(mean(red), mean(green), mean(blue), m_channels == Channels::Rgba ? mean(alpha) : 255);
    }
    m_sums.assign(m_sums.size(), {});
    m_missingHeight = m_source.height();
    ++m_nextRow;
}
