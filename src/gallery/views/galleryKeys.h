#pragma once

#include <optional>

class QKeyEvent;
struct GalleryGridGeometry;

/// Where the keyboard goes from the cell at `current` (-1: from none): by the arrows in the direction that
/// they show, by Home and End to the ends, by the page keys so many rows. It stays where it is at the edge.
/// None if the key is no such key, or has a modifier that gives it another meaning.
[[nodiscard]] std::optional<int>
galleryIndexForKey(const QKeyEvent &event, int current, const GalleryGridGeometry &geometry, int rowsPerPage);
