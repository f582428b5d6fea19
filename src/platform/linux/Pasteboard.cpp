#include "Pasteboard.h"

#include "imageThumbnail.h"

#include <QBuffer>
#include <QClipboard>
#include <QGuiApplication>
#include <QImage>
#include <QMimeData>

#include <memory>
#include <utility>

namespace {

const QString toolkitImageType = QStringLiteral("application/x-qt-image");

/// One image on offer. `application/x-qt-image` is answered but not listed: the toolkit would offer every
/// type that it can write beside it, and load all of its image plugins to find out which those are.
class ImageMimeData final : public QMimeData {
public:
    explicit ImageMimeData(Image image) : m_image(std::move(image)) {}

    [[nodiscard]] QStringList formats() const override
    {
        QStringList types = {
            mimeType(m_image.format), mimeType(ImageFormat::Png), mimeType(ImageFormat::Bmp)};
        types.removeDuplicates();
        return types;
    }

    [[nodiscard]] bool hasFormat(const QString &type) const override { return formats().contains(type); }

protected:
    [[nodiscard]] QVariant retrieveData(const QString &type, QMetaType) const override
    {
        if (type == mimeType(m_image.format)) {
            return m_image.bytes;
        }
        if (type == toolkitImageType) {
            return decoded();
        }
        if (type == mimeType(ImageFormat::Png)) {
            return converted(ImageFormat::Png);
        }
        if (type == mimeType(ImageFormat::Bmp)) {
            return converted(ImageFormat::Bmp);
        }
        return {};
    }

private:
    [[nodiscard]] QImage decoded() const
    {
        QBuffer buffer;
        buffer.setData(m_image.bytes);
        buffer.open(QIODevice::ReadOnly);
        return uprightImage(buffer, m_image.format);
    }

    [[nodiscard]] QByteArray converted(ImageFormat format) const
    {
        QBuffer buffer;
        buffer.open(QIODevice::WriteOnly);
        const bool written = decoded().save(&buffer, readerName(format).constData());
        return written ? buffer.data() : QByteArray();
    }

    Image m_image;
};

std::unique_ptr<QMimeData> fileList(const QList<Image> &images)
{
    QList<QUrl> urls;
    QByteArray copiedFiles = QByteArrayLiteral("copy");
    for (const Image &image : images) {
        urls.append(image.url);
        // No line break at the end: Nautilus takes an empty line for a damaged list.
        copiedFiles += '\n' + image.url.toEncoded();
    }
    auto list = std::make_unique<QMimeData>();
    list->setUrls(urls);
    list->setData(QStringLiteral("x-special/gnome-copied-files"), copiedFiles);
    return list;
}

} // namespace

Pasteboard &Pasteboard::general()
{
    static Pasteboard instance;
    return instance;
}

void Pasteboard::clearContents()
{
    QGuiApplication::clipboard()->clear();
}

bool Pasteboard::writeObjects(const QList<Image> &images)
{
    if (images.isEmpty()) {
        return false;
    }
    const bool liesAsItsBytes = images.size() == 1 && !images.constFirst().bytes.isEmpty();
    QGuiApplication::clipboard()->setMimeData(
        liesAsItsBytes ? new ImageMimeData(images.constFirst()) : fileList(images).release());
    return true;
}
