#include "GalleryGridMetrics.h"

#include <algorithm>

int GalleryGridMetrics::columnCountFitting(int availableWidth) const
{
    // Each column but the first brings a gap with it.
    const int rest = availableWidth - cellWidth;
    return std::clamp(rest < 0 ? 0 : 1 + rest / (cellWidth + spacing), 1, columnCount);
}

GalleryGridMetrics GalleryGridMetrics::embedded()
{
    return {
        .cellWidth = 80,
        .cellHeight = 60,
        .spacing = 4,
        .columnCount = 3,
        .cornerRadius = 6,
        .showCaption = false,
    };
}

GalleryGridMetrics GalleryGridMetrics::expanded(GalleryGridSize size)
{
    return {
        .cellWidth = galleryGrid::thumbnailWidth(size),
        .cellHeight = galleryGrid::thumbnailHeight(size),
        .spacing = galleryGrid::spacing(size),
        .columnCount = galleryGrid::columnCount(size),
        .cornerRadius = 12,
        .showCaption = true,
    };
}
