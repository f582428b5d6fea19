#include "ImageFormat.h"

#include <QByteArrayView>

std::optional<ImageFormat> recognizedImageFormat(QByteArrayView leadingBytes)
{
    const auto hasAt = [leadingBytes](qsizetype position, QByteArrayView signature) {
        return leadingBytes.size() >= position + signature.size() &&
               leadingBytes.sliced(position, signature.size()) == signature;
    };
    // Lengths are given because some signatures hold zeros.
    if (hasAt(0, {"\x89PNG\r\n\x1a\n", 8})) {
        return ImageFormat::Png;
    }
    if (hasAt(0, {"\xff\xd8\xff", 3})) {
        return ImageFormat::Jpeg;
    }
    if (hasAt(0, {"GIF87a", 6}) || hasAt(0, {"GIF89a", 6})) {
        return ImageFormat::Gif;
    }
    if (hasAt(0, {"RIFF", 4}) && hasAt(8, {"WEBP", 4})) {
        return ImageFormat::WebP;
    }
    // Two letters alone would take any text that begins with them; the reserved bytes are zero.
    if (hasAt(0, {"BM", 2}) && hasAt(6, {"\0\0\0\0", 4})) {
        return ImageFormat::Bmp;
    }
    if (hasAt(0, {"II*\0", 4}) || hasAt(0, {"MM\0*", 4})) {
        return ImageFormat::Tiff;
    }
    return std::nullopt;
}

QByteArray readerName(ImageFormat format)
{
    switch (format) {
    case ImageFormat::Png:
        return QByteArrayLiteral("png");
    case ImageFormat::Jpeg:
        return QByteArrayLiteral("jpeg");
    case ImageFormat::Gif:
        return QByteArrayLiteral("gif");
    case ImageFormat::WebP:
        return QByteArrayLiteral("webp");
    case ImageFormat::Bmp:
        return QByteArrayLiteral("bmp");
    case ImageFormat::Tiff:
        return QByteArrayLiteral("tiff");
    }
    Q_UNREACHABLE();
}

QString mimeType(ImageFormat format)
{
    return QStringLiteral("image/") + QString::fromLatin1(readerName(format));
}
