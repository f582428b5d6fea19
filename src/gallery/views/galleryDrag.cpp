#include "galleryDrag.h"

#include "GalleryThumbnail.h"
#include "ScreenshotGalleryViewModel.h"
#include "thumbnailPainting.h"
#include "thumbnailPictures.h"

#include <QMimeData>
#include <QPainter>
#include <QPixmap>

QList<ScreenshotItem>
galleryDrag::screenshots(const ScreenshotGalleryViewModel &model, const ScreenshotItem &dragged)
{
    if (!model.isSelectionMode() || !model.selectedIDs().contains(dragged.id)) {
        return {dragged};
    }
    return model.selectedScreenshots();
}

std::unique_ptr<QMimeData> galleryDrag::files(const QList<ScreenshotItem> &screenshots)
{
    QList<QUrl> urls;
    for (const ScreenshotItem &screenshot : screenshots) {
        urls.append(screenshot.url());
    }
    auto data = std::make_unique<QMimeData>();
    data->setUrls(urls);
    return data;
}

QPixmap galleryDrag::picture(const GalleryThumbnail &cell)
{
    const ThumbnailFrame frame{
        .rect = {QPoint(), cell.imageSize()},
        .cornerRadius = cell.cornerRadius(),
        .pixelRatio = cell.devicePixelRatioF(),
    };
    QPixmap picture(frame.pixelSize());
    picture.setDevicePixelRatio(frame.pixelRatio);
    picture.fill(Qt::transparent);
    QPainter painter(&picture);
    painter.setRenderHint(QPainter::Antialiasing);
    if (cell.thumbnailImage().isNull()) {
        thumbnailPainting::paintPlaceholder(painter, frame);
    } else {
        painter.drawImage(0, 0, thumbnailPictures::framed(cell.thumbnailImage(), frame));
    }
    thumbnailPainting::paintEdge(painter, frame);
    return picture;
}
