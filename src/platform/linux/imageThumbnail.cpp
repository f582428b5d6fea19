#include "imageThumbnail.h"

#include "isFinishedImage.h"
#include "pngThumbnail.h"
#include "thumbnailSize.h"

#include <QFile>
#include <QImageReader>

#include <algorithm>

namespace {

constexpr int bytesPerPixel = 4;
constexpr qint64 mebibyte = 1 << 20;

/// Below 50 the toolkit's JPEG reader takes the quicker of two transforms and doesn't smooth the colours.
constexpr int quickJpegQuality = 49;

/// The toolkit refuses images of more than 256 MiB unless told otherwise, once for all readers.
void raiseAllocationLimit()
{
    [[maybe_unused]] static const bool once = [] {
        QImageReader::setAllocationLimit(int(mostImagePixels * bytesPerPixel / mebibyte));
        return true;
    }();
}

/// A decoder may hold the pixels twice, or for a rotated image once more, and they are scaled in four bytes
/// or in those that they have: with half a GiB for one thumbnail it ends. JPEG is decoded at a fraction of
/// its size, but a progressive one holds all of its coefficients: two bytes each, and four of them for a
/// pixel in the colours of print.
bool isDecodedInLittleMemory(const QImageReader &reader, ImageFormat format)
{
    constexpr qint64 mostBytes = 192 * mebibyte;
    constexpr qint64 mostJpegPixels = qint64(3) << 24; // of 8 bytes: 384 MiB
    const QSize size = reader.size();
    const qint64 pixels = qint64(size.width()) * size.height();
    if (format == ImageFormat::Jpeg) {
        return pixels <= mostJpegPixels;
    }
    // GIF and WebP don't tell: they have a byte for each channel.
    const QImage::Format told = reader.imageFormat();
    const QPixelFormat pixelFormat =
        QImage::toPixelFormat(told == QImage::Format_Invalid ? QImage::Format_ARGB32 : told);
    const int bytes = std::max((pixelFormat.bitsPerPixel() + 7) / 8, bytesPerPixel);
    return pixels * bytes <= mostBytes;
}

/// The size at which a JPEG is decoded: the decoder can do a half, a quarter and an eighth of the original's
/// by itself, which is quicker than all that comes after. The largest fraction that leaves no side shorter
/// than `least`.
QSize jpegReadSize(QSize size, QSize least)
{
    for (const int fraction : {8, 4, 2}) {
        // Cut to whole pixels: rounded up, the toolkit would choose the next larger fraction.
        const QSize read(size.width() / fraction, size.height() / fraction);
        if (read.width() >= least.width() && read.height() >= least.height()) {
            return read;
        }
    }
    return size;
}

/// In one of the formats that are scaled and painted without another conversion; in the same memory where
/// that has room for it.
QImage paintable(QImage image)
{
    const auto format = image.hasAlphaChannel() ? QImage::Format_ARGB32_Premultiplied : QImage::Format_RGB32;
    image.convertTo(format);
    return image;
}

std::optional<ImageThumbnails>
decodedThumbnails(QIODevice &device, ImageFormat format, std::span<const int> maximumPixelSizes)
{
    raiseAllocationLimit();
    QImageReader reader(&device, readerName(format));
    reader.setAutoTransform(true);
    const QSize stored = reader.size();
    if (!isAcceptableImageSize(stored) || !isDecodedInLittleMemory(reader, format)) {
        return std::nullopt;
    }
    if (format == ImageFormat::Jpeg) {
        const QSize largest = thumbnailSize(stored, std::ranges::max(maximumPixelSizes));
        const QSize read = jpegReadSize(stored, largest);
        if (read != stored) {
            reader.setScaledSize(read);
            // The reader's word for leaving out what is only to be seen at full size.
            reader.setQuality(quickJpegQuality);
        }
    }
    const bool isTurned = (reader.transformation() & QImageIOHandler::TransformationRotate90) != 0;
    const QImage image = paintable(reader.read());
    if (image.isNull()) {
        return std::nullopt;
    }
    ImageThumbnails thumbnails = {.imageSize = isTurned ? stored.transposed() : stored, .images = {}};
    for (const int maximum : maximumPixelSizes) {
        const QSize size = thumbnailSize(thumbnails.imageSize, maximum);
        thumbnails.images.append(
            image.scaled(size.boundedTo(image.size()), Qt::IgnoreAspectRatio, Qt::SmoothTransformation));
    }
    return thumbnails;
}

} // namespace

std::optional<ImageThumbnails>
imageThumbnails(int descriptor, ImageFormat format, std::span<const int> maximumPixelSizes)
{
    if (!isFinishedImage(descriptor, format)) {
        return std::nullopt;
    }
    if (format == ImageFormat::Png && !isInterlacedPng(descriptor)) {
        return pngThumbnails(descriptor, maximumPixelSizes);
    }
    QFile file;
    if (!file.open(descriptor, QIODevice::ReadOnly, QFileDevice::DontCloseHandle) || !file.seek(0)) {
        return std::nullopt;
    }
    return decodedThumbnails(file, format, maximumPixelSizes);
}

QImage uprightImage(QIODevice &device, ImageFormat format)
{
    raiseAllocationLimit();
    QImageReader reader(&device, readerName(format));
    reader.setAutoTransform(true);
    return isAcceptableImageSize(reader.size()) ? reader.read() : QImage();
}
