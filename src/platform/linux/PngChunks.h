#pragma once

#include <QtGlobal>

#include <sys/types.h>

#include <cstddef>
#include <memory>

/// Walks the chunks of a PNG (length, type, contents, checksum) from the beginning of the file, whatever the
/// descriptor's position is, which stays as it was. Holds a piece of the file of bounded size. Each step
/// returns false if the file is damaged, ends too early or can't be read; the walk is over then. What a chunk
/// means, and where it may stand, is the caller's business.
class PngChunks final {
public:
    /// A chunk's name as a number, first letter highest.
    static constexpr quint32 type(const char (&name)[5])
    {
        return quint32(uchar(name[0])) << 24 | quint32(uchar(name[1])) << 16 | quint32(uchar(name[2])) << 8 |
               quint32(uchar(name[3]));
    }

    explicit PngChunks(int descriptor);

    [[nodiscard]] bool readSignature();

    /// To the next chunk's contents, once this one has been finished or jumped over.
    [[nodiscard]] bool readHeader();

    // Of the chunk whose header was read last.
    [[nodiscard]] quint32 type() const { return m_type; }

    /// Bytes that haven't been read yet.
    [[nodiscard]] size_t left() const { return m_left; }

    /// A reader that doesn't know it can't show the image.
    [[nodiscard]] bool isCritical() const;

    /// The next bytes of the contents, of which `count` must be left.
    [[nodiscard]] bool read(uchar *bytes, size_t count);

    /// Reads what is left and compares the checksum.
    [[nodiscard]] bool finish();

    /// Skips what is left, unread and unchecked. That the file ends before it is noticed at the next chunk.
    void jumpOver();

private:
    [[nodiscard]] bool readBytes(uchar *bytes, size_t count);
    [[nodiscard]] bool readNumber(quint32 &number);
    [[nodiscard]] bool fill();

    int m_descriptor;
    off_t m_position = 0; // in the file, behind the buffer
    std::unique_ptr<uchar[]> m_buffer;
    size_t m_begin = 0; // in the buffer
    size_t m_end = 0;
    quint32 m_type = 0;
    size_t m_left = 0;
    quint32 m_checksum = 0;
};
