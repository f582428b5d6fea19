#pragma once

#include <QList>

#include <memory>

class QMimeData;
class QPixmap;
class GalleryThumbnail;
struct ScreenshotItem;
class ScreenshotGalleryViewModel;

/// What leaves a gallery when a screenshot is dragged out of it.
namespace galleryDrag {

/// The screenshot alone, or, if it is one of those that are selected, all of these that are displayed.
[[nodiscard]] QList<ScreenshotItem>
screenshots(const ScreenshotGalleryViewModel &model, const ScreenshotItem &dragged);

/// The files, for file managers and for programs that open them.
[[nodiscard]] std::unique_ptr<QMimeData> files(const QList<ScreenshotItem> &screenshots);

/// The image of the cell as it is shown, without what tells its state.
[[nodiscard]] QPixmap picture(const GalleryThumbnail &cell);

} // namespace galleryDrag
