#pragma once

#include "AreaAverage.h"
#include "PngChunks.h"
#include "PngHeader.h"
#include "PngPixelData.h"

#include <array>
#include <memory>
#include <optional>
#include <vector>

/// The rows of a PNG of 8 bits per channel that isn't interlaced, from the top: red, green, blue and, where
/// the file has any transparency, alpha, a byte each and not premultiplied. Holds a few rows and some
/// hundred KiB. Strict with what it reads: the checksum of every chunk that says something about the pixels
/// and that of the pixels. Texts, profiles and the like are jumped over. Each step fails if the file is
/// damaged or ends too early; the reader is of no further use then.
class PngRows final {
public:
    [[nodiscard]] static bool canRead(const PngHeader &header);

    explicit PngRows(int descriptor);

    /// Everything before the pixels. Also fails for what `canRead` excludes.
    [[nodiscard]] bool readHeader();

    // Of the header that was read.
    [[nodiscard]] QSize size() const { return m_header.size; }

    [[nodiscard]] AreaAverage::Channels channels() const { return m_channels; }

    /// Valid until the next call; null on failure. To be called as often as there are rows.
    [[nodiscard]] const uchar *readRow();

    /// What is behind the pixels, to the end of the file's last chunk.
    [[nodiscard]] bool readEnd();

private:
    struct Color {
        uchar red = 0;
        uchar green = 0;
        uchar blue = 0;
        uchar alpha = 255;
    };

    [[nodiscard]] bool readImageHeader();
    [[nodiscard]] bool readPalette();
    [[nodiscard]] bool readTransparency();
    [[nodiscard]] bool skipOther();
    void allocateRows();
    [[nodiscard]] bool fill();
    [[nodiscard]] const uchar *expanded(const uchar *row);

    PngChunks m_chunks;
    PngHeader m_header;
    AreaAverage::Channels m_channels = AreaAverage::Channels::Rgb;
    std::array<Color, 256> m_colors; // of the palette or the grays
    size_t m_paletteSize = 0;
    std::optional<Color> m_transparentColor; // of an RGB image
    std::unique_ptr<PngPixelData> m_pixelData;
    size_t m_rowBytes = 0;         // as stored, without the filter's byte
    qint64 m_missingBytes = 0;     // not unpacked yet
    std::vector<uchar> m_buffer;   // the row before, then what is unpacked
    size_t m_begin = 0;            // of the next row in the buffer, at its filter's byte
    size_t m_end = 0;              // of what is unpacked
    std::vector<uchar> m_expanded; // a row that isn't stored as it is answered
};
