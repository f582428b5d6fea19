#include "galleryDrag.h"

#include "GalleryThumbnail.h"
#include "ScreenshotGalleryViewModel.h"
#include "thumbnailPainting.h"

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
    const qreal ratio = cell.devicePixelRatioF();
    QPixmap picture((QSizeF(cell.imageSize()) * ratio).toSize());
    picture.setDevicePixelRatio(ratio);
    picture.fill(Qt::transparent);
    QPainter painter(&picture);
    painter.setRenderHint(QPainter::Antialiasing);
    const QRectF frame(QPointF(), cell.imageSize());
    if (cell.thumbnailImage().isNull()) {
        thumbnailPainting::paintPlaceholder(painter, frame, cell.cornerRadius());
    } else {
        thumbnailPainting::paintImage(
            painter, frame, cell.cornerRadius(),
            thumbnailPainting::framed(cell.thumbnailImage(), cell.imageSize(), ratio));
    }
    thumbnailPainting::paintEdge(painter, frame, cell.cornerRadius());
    return picture;
}
