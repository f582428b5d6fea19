#include "ImageSource.h"

#include "ImageFile.h"
#include "imageThumbnail.h"

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
    return imageThumbnail(m_file->file->handle(), m_file->format, maximumPixelSize);
}

const FileState &ImageSource::fileState() const
{
    return m_file->state;
}
