#include "pngThumbnail.h"

#include "AreaAverage.h"
#include "FunctionRef.h"
#include "LibpngRows.h"
#include "PngRows.h"
#include "thumbnailSize.h"

#include <map>
#include <utility>

namespace {

/// The sizes that are wanted of an image of this size; none of them larger.
using TargetSizes = FunctionRef<QList<QSize>(QSize imageSize)>;

/// One for each different size.
template <typename Rows> bool average(Rows &rows, std::map<std::pair<int, int>, AreaAverage> &averages)
{
    for (int y = 0; y < rows.size().height(); ++y) {
        const uchar *const row = rows.readRow();
        if (row == nullptr) {
            return false;
        }
        for (auto &[size, average] : averages) {
            average.addRow(row);
        }
    }
    return rows.readEnd();
}

template <typename Rows> std::optional<ImageThumbnails> averaged(Rows rows, TargetSizes targetSizes)
{
    if (!rows.readHeader() || !isAcceptableImageSize(rows.size())) {
        return std::nullopt;
    }
    const QList<QSize> targets = targetSizes(rows.size());
    const auto key = [](QSize size) { return std::pair(size.width(), size.height()); };
    std::map<std::pair<int, int>, AreaAverage> averages;
    for (const QSize target : targets) {
        const auto [position, isNew] =
            averages.try_emplace(key(target), rows.size(), target, rows.channels());
        if (position->second.image().isNull()) {
            return std::nullopt;
        }
    }
    if (!average(rows, averages)) {
        return std::nullopt;
    }
    ImageThumbnails thumbnails = {.imageSize = rows.size(), .images = {}};
    for (const QSize target : targets) {
        thumbnails.images.append(averages.at(key(target)).image());
    }
    return thumbnails;
}

std::optional<ImageThumbnails> averagedPng(int descriptor, TargetSizes targetSizes)
{
    const auto read = PngHeader::ofFile(descriptor);
    if (!read) {
        return std::nullopt;
    }
    return PngRows::canRead(*read) ? averaged(PngRows(descriptor), targetSizes)
                                   : averaged(LibpngRows(descriptor), targetSizes);
}

} // namespace

bool isInterlacedPng(int descriptor)
{
    const auto read = PngHeader::ofFile(descriptor);
    return read && read->isInterlaced;
}

std::optional<QImage> pngThumbnail(int descriptor, int maximumPixelSize)
{
    const auto thumbnails = pngThumbnails(descriptor, {&maximumPixelSize, 1});
    return thumbnails ? std::optional(thumbnails->images.constFirst()) : std::nullopt;
}

std::optional<ImageThumbnails> pngThumbnails(int descriptor, std::span<const int> maximumPixelSizes)
{
    return averagedPng(descriptor, [maximumPixelSizes](QSize imageSize) {
        QList<QSize> sizes;
        for (const int maximum : maximumPixelSizes) {
            sizes.append(thumbnailSize(imageSize, maximum));
        }
        return sizes;
    });
}

std::optional<QImage> scaledPng(int descriptor, QSize size)
{
    const auto scaled =
        averagedPng(descriptor, [size](QSize imageSize) { return QList{size.boundedTo(imageSize)}; });
    return scaled ? std::optional(scaled->images.constFirst()) : std::nullopt;
}
