#pragma once

#include "FileState.h"

#include <QImage>

#include <memory>
#include <optional>

class QUrl;
struct ImageFile;

/// An image file from which small pictures are made. For a background thread: reading takes its time.
class ImageSource final {
public:
    /// Opens the file. None if it can't be read, isn't a regular file or isn't an image that we know.
    [[nodiscard]] static std::optional<ImageSource> create(const QUrl &url);

    ~ImageSource();
    ImageSource(ImageSource &&other) noexcept;
    ImageSource &operator=(ImageSource &&other) noexcept;
    Q_DISABLE_COPY(ImageSource)

    /// The file's first image, scaled down until its longer side is at most `maximumPixelSize` pixels, and
    /// never up; always made of the full image, never of an embedded thumbnail, and upright. None if the
    /// image is damaged, still unfinished, or too large: a PNG of more than 2^28 pixels, or anything that
    /// would take more than half a GiB while it is decoded.
    [[nodiscard]] std::optional<QImage> thumbnail(int maximumPixelSize) const;

    /// The same, for a gallery that shows the file again and again: out of the cache that the desktop's
    /// programs share, where it holds one of the file as it is; otherwise it is made as above and may be put
    /// there. Never of a file that can't be opened.
    [[nodiscard]] std::optional<QImage> sharedThumbnail(int maximumPixelSize) const;

    /// The file as it was when it was opened.
    [[nodiscard]] const FileState &fileState() const;

private:
    explicit ImageSource(std::unique_ptr<const ImageFile> file);

    std::unique_ptr<const ImageFile> m_file;
};
