#include "imageThumbnail.h"

#include "isFinishedImage.h"
#include "pngThumbnail.h"
#include "thumbnailSize.h"

#include <QFile>
#include <QImageReader>

namespace {

constexpr int bytesPerPixel = 4;
constexpr qint64 mebibyte = 1 << 20;

/// The toolkit refuses images of more than 256 MiB unless told otherwise, once for all readers.
void raiseAllocationLimit()
{
    [[maybe_unused]] static const bool once = [] {
        QImageReader::setAllocationLimit(int(mostImagePixels * bytesPerPixel / mebibyte));
        return true;
    }();
}

/// What the reader is asked for. The JPEG reader scales by powers of two while it decodes and then roughly:
/// twice the size leaves the last step to a smooth scaling of ours.
QSize readSize(ImageFormat format, QSize size, int maximum)
{
    return thumbnailSize(size, format == ImageFormat::Jpeg ? maximum * 2 : maximum);
}

} // namespace

std::optional<QImage> imageThumbnail(int descriptor, ImageFormat format, int maximumPixelSize)
{
    if (!isFinishedImage(descriptor, format)) {
        return std::nullopt;
    }
    if (format == ImageFormat::Png && !isInterlacedPng(descriptor)) {
        return pngThumbnail(descriptor, maximumPixelSize);
    }
    QFile file;
    if (!file.open(descriptor, QIODevice::ReadOnly, QFileDevice::DontCloseHandle) || !file.seek(0)) {
        return std::nullopt;
    }
    raiseAllocationLimit();
    QImageReader reader(&file, readerName(format));
    reader.setAutoTransform(true);
    const QSize size = reader.size();
    if (!isAcceptableImageSize(size)) {
        return std::nullopt;
    }
    const QSize wanted = readSize(format, size, maximumPixelSize);
    if (wanted != size) {
        reader.setScaledSize(wanted);
    }
    QImage image = reader.read();
    if (image.isNull()) {
        return std::nullopt;
    }
    // Measured again: the orientation may have swapped the sides.
    const QSize fittedSize = thumbnailSize(image.size(), maximumPixelSize);
    if (fittedSize != image.size()) {
        image = image.scaled(fittedSize, Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
    }
    // The formats that are painted without another conversion.
    image.convertTo(image.hasAlphaChannel() ? QImage::Format_ARGB32_Premultiplied : QImage::Format_RGB32);
    return image;
}

QImage uprightImage(QIODevice &device, ImageFormat format)
{
    raiseAllocationLimit();
    QImageReader reader(&device, readerName(format));
    reader.setAutoTransform(true);
    return isAcceptableImageSize(reader.size()) ? reader.read() : QImage();
}
