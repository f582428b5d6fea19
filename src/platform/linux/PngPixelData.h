#pragma once

#include "PngChunks.h"

#include <memory>

struct inflate_state;

/// What the IDAT chunks of a PNG hold once it is unpacked: one zlib stream, however they cut it. Unpacks no
/// more than it is asked for, so that a small file can't become an endless one. Each step returns false if
/// the file is damaged or ends too early; the reader is of no further use then. ISA-L, which unpacks, lets a
/// block's table pass that leaves codes unused, where zlib refuses; such a code itself, or a wrong checksum
/// of the pixels, is refused all the same.
class PngPixelData final {
public:
    /// `chunks` is at the contents of the first IDAT, and afterwards of the chunk behind the last one.
    explicit PngPixelData(PngChunks &chunks);
    ~PngPixelData();
    Q_DISABLE_COPY_MOVE(PngPixelData)

    /// Exactly `count` bytes. Largest steps are fastest: the unpacker keeps what it refers back to elsewhere.
    [[nodiscard]] bool read(uchar *bytes, size_t count);

    /// To be called when all pixels are read: the stream's checksum, and those of the chunks that are left.
    /// More data than the pixels need is let pass, as libpng does; its checksum isn't reached then.
    [[nodiscard]] bool readEnd();

private:
    enum class Outcome { Filled, Ended, Damaged };

    [[nodiscard]] Outcome unpack(uchar *bytes, size_t count);
    [[nodiscard]] bool fill();
    [[nodiscard]] bool checkHeader(size_t count);
    [[nodiscard]] bool skipEmptyChunks();

    PngChunks &m_chunks;
    std::unique_ptr<uchar[]> m_packed;
    bool m_hasHeader = false;
    std::unique_ptr<inflate_state> m_state;
};
