#pragma once

#include <QImage>

#include <array>
#include <vector>

/// Shrinks an image whose rows come one by one from the top: each pixel of the result is the exact mean of
/// the area that it covers, with edge pixels in proportion, so that neither thin lines nor small text are
/// missed. Holds the result and the sums of one of its rows, however large the source is. Colours are
/// weighted with their opacity. A value of whoever reads the rows; any thread.
class AreaAverage final {
public:
    /// The pixels of a source row, a byte per channel, not premultiplied.
    enum class Channels { Rgb = 3, Rgba = 4 };

    /// No side of the source may be longer: a row's sums have 32 bits.
    static constexpr int longestSide = 1'000'000;

    /// `target` is at least 1 × 1 and in neither direction larger than `source`.
    AreaAverage(QSize source, QSize target, Channels channels);

    /// The source's next row: its width times the channels in bytes.
    void addRow(const uchar *row);

    /// Complete after the last row: RGB32, or premultiplied ARGB32. Null if there was no memory for it.
    [[nodiscard]] const QImage &image() const { return m_image; }

private:
    using Sums = std::array<quint32, 4>;

    const uchar *premultiplied(const uchar *row);
    void addWholeRow(const uchar *row);
    void addWholeRows();
    template <typename Value> void sumColumns(const Value *row);
    template <Channels channels, typename Value> void sumColumnsOf(const Value *pixel);
    void addSums(quint32 weight);
    void finishRow();

    QSize m_source;
    Channels m_channels;
    QImage m_image;
    std::vector<uchar> m_premultiplied; // a source row with transparency
    std::vector<quint16> m_wholeRows;   // the sum of source rows, by channel: see `addRow`
    int m_wholeRowCount = 0;
    int m_mostWholeRows;
    std::vector<Sums> m_rowSums;                // of one source row or such a sum, per target column
    std::vector<std::array<quint64, 4>> m_sums; // of the target's row in progress, likewise
    int m_nextRow = 0;                          // of the target
    int m_missingHeight;                        // of that row: see `addRow`
};
