#include "ImageSource.h"

#include "ImageFile.h"
#include "SharedThumbnailCache.h"
#include "imageThumbnail.h"

#include <algorithm>
#include <array>
#include <utility>

std::optional<ImageSource> ImageSource::create(const QUrl &url)
{
    Result<ImageFile> file = ImageFile::open(url);
    if (!file) {
        return std::nullopt;
    }
    return ImageSource(std::make_unique<const ImageFile>(std::move(*file)));
}

ImageSource::ImageSource(std::unique_ptr<const ImageFile> file) : m_file(std::move(file))
{
}

ImageSource::~ImageSource() = default;
ImageSource::ImageSource(ImageSource &&other) noexcept = default;
ImageSource &ImageSource::operator=(ImageSource &&other) noexcept = default;

std::optional<QImage> ImageSource::thumbnail(int maximumPixelSize) const
{
    const auto thumbnails = imageThumbnails(m_file->file->handle(), m_file->format, {&maximumPixelSize, 1});
    return thumbnails ? std::optional(thumbnails->images.constFirst()) : std::nullopt;
}

std::optional<QImage> ImageSource::sharedThumbnail(int maximumPixelSize) const
{
    const SharedThumbnailCache cache(m_file->path);
    if (auto shared = cache.thumbnail(m_file->state, maximumPixelSize)) {
        return shared;
    }
    const auto entrySide = SharedThumbnailCache::entrySide(maximumPixelSize);
    if (!entrySide || !cache.mayHold(m_file->state)) {
        return thumbnail(maximumPixelSize);
    }
    const std::array sizes = {maximumPixelSize, *entrySide};
    const auto thumbnails = imageThumbnails(m_file->file->handle(), m_file->format, sizes);
    if (!thumbnails) {
        return std::nullopt;
    }
    const auto &[size, images] = *thumbnails;
    // A smaller one is read as quickly as its entry would be.
    if (std::max(size.width(), size.height()) > maximumPixelSize) {
        cache.store(images.at(1), *entrySide, m_file->state, {.format = m_file->format, .size = size});
    }
    return images.at(0);
}

const FileState &ImageSource::fileState() const
{
    return m_file->state;
}
