#pragma once

#include <QString>

#include <array>

/// The sizes of the expanded gallery's grid, in the order in which they are offered.
enum class GalleryGridSize { Compact, Standard, Large };

/// What each size stands for. Lengths are in points; thumbnails are four wide to three high.
namespace galleryGrid {

inline constexpr std::array allSizes = {
    GalleryGridSize::Compact, GalleryGridSize::Standard, GalleryGridSize::Large};

/// As a person picks it.
[[nodiscard]] QString title(GalleryGridSize size);

[[nodiscard]] int thumbnailWidth(GalleryGridSize size);
[[nodiscard]] int thumbnailHeight(GalleryGridSize size);

/// Between two cells, across and down.
[[nodiscard]] int spacing(GalleryGridSize size);

/// The number of columns where there is room for them.
[[nodiscard]] int columnCount(GalleryGridSize size);

/// How many whole columns the grid has in a host of this inner width: as many as fit, at most the size's own
/// number, at least one.
[[nodiscard]] int columnCountFitting(GalleryGridSize size, int availableWidth);

} // namespace galleryGrid
