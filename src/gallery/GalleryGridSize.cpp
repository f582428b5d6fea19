#include "GalleryGridSize.h"

#include <QCoreApplication>

#include <algorithm>

namespace {

using Table = std::array<int, galleryGrid::allSizes.size()>;

constexpr Table widths = {80, 120, 200};
constexpr Table heights = {60, 90, 150};
constexpr Table columnCounts = {10, 6, 3};

constexpr int entry(const Table &table, GalleryGridSize size)
{
    return table.at(static_cast<size_t>(size));
}

} // namespace

QString galleryGrid::title(GalleryGridSize size)
{
    switch (size) {
    case GalleryGridSize::Compact:
        return QCoreApplication::translate("GalleryGridSize", "Compact");
    case GalleryGridSize::Standard:
        return QCoreApplication::translate("GalleryGridSize", "Standard");
    case GalleryGridSize::Large:
        return QCoreApplication::translate("GalleryGridSize", "Large");
    }
    Q_UNREACHABLE();
}

int galleryGrid::thumbnailWidth(GalleryGridSize size)
{
    return entry(widths, size);
}

int galleryGrid::thumbnailHeight(GalleryGridSize size)
{
    return entry(heights, size);
}

int galleryGrid::spacing(GalleryGridSize size)
{
    switch (size) {
    case GalleryGridSize::Compact:
        return 8;
    case GalleryGridSize::Standard:
        return 12;
    case GalleryGridSize::Large:
        return 16;
    }
    Q_UNREACHABLE();
}

int galleryGrid::columnCount(GalleryGridSize size)
{
    return entry(columnCounts, size);
}

int galleryGrid::columnCountFitting(GalleryGridSize size, int availableWidth)
{
    // Each column but the first brings a gap with it.
    const int rest = availableWidth - thumbnailWidth(size);
    const int fitting = rest < 0 ? 0 : 1 + rest / (thumbnailWidth(size) + spacing(size));
    return std::clamp(fitting, 1, columnCount(size));
}
