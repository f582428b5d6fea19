#pragma once

#include <QByteArray>
#include <QString>

#include <optional>

/// The types of image that the program can show and copy.
enum class ImageFormat { Png, Jpeg, Gif, WebP, Bmp, Tiff };

/// How many of a file's first bytes `recognizedImageFormat` wants to see; fewer are a shorter file.
inline constexpr int imageFormatLeadingBytes = 16;

/// Tells an image's type by its first bytes, never by its name. None: not an image that we know.
[[nodiscard]] std::optional<ImageFormat> recognizedImageFormat(QByteArrayView leadingBytes);

/// The name under which the toolkit's reader knows the format.
[[nodiscard]] QByteArray readerName(ImageFormat format);

/// `image/png` and so on.
[[nodiscard]] QString mimeType(ImageFormat format);
