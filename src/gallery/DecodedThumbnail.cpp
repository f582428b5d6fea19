#include "DecodedThumbnail.h"

#include "FileManager.h"
#include "ImageSource.h"

#include <QUrl>

DecodedThumbnail decodeThumbnail(const QString &path, int maximumPixelSize)
{
    // Before it is opened: a file that comes or changes while this fails is another one than what failed.
    const auto before = FileManager::defaultManager().fileState(path);
    const auto source = ImageSource::create(QUrl::fromLocalFile(path));
    if (!source) {
        return {.image = {}, .fileState = before ? std::optional(*before) : std::nullopt};
    }
    return {
        .image = source->sharedThumbnail(maximumPixelSize).value_or(QImage()),
        .fileState = source->fileState(),
    };
}
