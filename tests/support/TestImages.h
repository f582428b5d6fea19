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

/// A PNG of black pixels, 8 bits each of red, green and blue, of any size, without holding the pixels.
[[nodiscard]] QByteArray blackPng(QSize size);

/// A PNG whose header claims `size` and that holds next to nothing.
[[nodiscard]] QByteArray hollowPng(QSize size);

/// `jpeg` with an EXIF orientation (1 to 8) and an embedded thumbnail that has an end marker of its own.
[[nodiscard]] QByteArray withExif(const QByteArray &jpeg, int orientation, const QByteArray &thumbnailJpeg);

} // namespace testImages
