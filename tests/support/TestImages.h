#pragma once

#include <QByteArray>
#include <QSize>
#include <QString>

class QImage;

/// Image files for tests, made byte by byte where no program would write them.
namespace testImages {

void writeFile(const QString &path, const QByteArray &bytes);

/// The image encoded under the toolkit's name of a format.
[[nodiscard]] QByteArray encoded(const QImage &image, const char *format);

/// What the header of a PNG says, in the format's own numbers.
struct PngHeader {
    QSize size;
    int bitDepth = 8;
    int colorType = 2; ///< 0 gray, 2 red, green and blue, 3 palette, 4 gray and alpha, 6 all four
    bool interlaced = false;
};

/// A PNG of `rows` as the format stores them, each after a byte that names its filter. `chunks` come before.
[[nodiscard]] QByteArray png(const PngHeader &header, const QByteArray &rows, const QByteArray &chunks = {});

/// A piece of a PNG, with its length and checksum.
[[nodiscard]] QByteArray pngChunk(const QByteArray &type, const QByteArray &contents);

/// A PNG of black pixels, 8 bits each of red, green and blue, of any size, without holding the pixels.
[[nodiscard]] QByteArray blackPng(QSize size);

/// The same, stored in the seven passes of an interlaced image.
[[nodiscard]] QByteArray interlacedBlackPng(QSize size, int channels = 3);

/// A PNG whose header claims `size` and that holds next to nothing.
[[nodiscard]] QByteArray hollowPng(QSize size);

/// `jpeg` with an EXIF orientation (1 to 8) and an embedded thumbnail that has an end marker of its own.
[[nodiscard]] QByteArray withExif(const QByteArray &jpeg, int orientation, const QByteArray &thumbnailJpeg);

} // namespace testImages
