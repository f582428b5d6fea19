#include "Image.h"

#include "ImageFile.h"

#include <QBuffer>
#include <QImageReader>

Result<Image> Image::contentsOf(const QUrl &url)
{
    Result<ImageFile> source = ImageFile::open(url);
    if (!source) {
        return std::unexpected(source.error());
    }
    const auto failed = [](const QString &description) {
        return std::unexpected(Error{.domain = errorDomain, .code = 1, .localizedDescription = description});
    };
    if (source->file->size() > largestFile) {
        return failed(QStringLiteral("The file is too large to be loaded as an image"));
    }
    QByteArray bytes = source->file->readAll();
    if (source->file->error() != QFileDevice::NoError) {
        return failed(source->file->errorString());
    }
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::ReadOnly);
    const QSize size = QImageReader(&buffer, readerName(source->format)).size();
    if (size.isEmpty()) {
        return failed(QStringLiteral("The image has no size that can be read"));
    }
    return Image{.bytes = bytes, .format = source->format, .pixelSize = size};
}
