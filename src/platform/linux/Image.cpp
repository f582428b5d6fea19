#include "Image.h"

#include "ImageFile.h"

#include <QBuffer>
#include <QImageReader>

namespace {

std::unexpected<Error> failure(const QString &description)
{
    return std::unexpected(
        Error{.domain = Image::errorDomain, .code = 1, .localizedDescription = description});
}

Result<ImageFile> openFile(const QUrl &url)
{
    Result<ImageFile> source = ImageFile::open(url);
    if (source && source->file->size() > Image::largestFile) {
        return failure(QStringLiteral("The file is too large to be loaded as an image"));
    }
    return source;
}

/// The image without its bytes, if its size can be read from the device.
Result<Image> described(const QUrl &url, QIODevice &device, ImageFormat format)
{
    const QSize size = QImageReader(&device, readerName(format)).size();
    if (size.isEmpty()) {
        return failure(QStringLiteral("The image has no size that can be read"));
    }
    return Image{.url = url, .bytes = {}, .format = format, .pixelSize = size};
}

} // namespace

Result<Image> Image::contentsOf(const QUrl &url)
{
    const Result<ImageFile> source = openFile(url);
    if (!source) {
        return std::unexpected(source.error());
    }
    QByteArray bytes = source->file->readAll();
    if (source->file->error() != QFileDevice::NoError) {
        return failure(source->file->errorString());
    }
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::ReadOnly);
    Result<Image> image = described(url, buffer, source->format);
    if (image) {
        image->bytes = bytes;
    }
    return image;
}

Result<Image> Image::byReferencing(const QUrl &url)
{
    const Result<ImageFile> source = openFile(url);
    if (!source) {
        return std::unexpected(source.error());
    }
    return described(url, *source->file, source->format);
}
