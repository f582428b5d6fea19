#pragma once

#include "FileManager.h"
#include "GalleryMode.h"

#include <QList>

#include <optional>

/// What a host decides about its gallery.
struct GalleryConfiguration {
    GalleryMode mode = GalleryMode::Expanded;
    /// How many items are shown at first and added at a time; none: all are shown at once.
    std::optional<qsizetype> batchSize;
    /// The folders that are listed besides the bookmarked one, in this order.
    QList<SearchPathDirectory> fallbackPaths;

    /// The popover under the status item.
    [[nodiscard]] static GalleryConfiguration popover()
    {
        return {
            .mode = GalleryMode::Embedded,
            .batchSize = 9,
            .fallbackPaths = {SearchPathDirectory::Desktop},
        };
    }

    /// The gallery's own window.
    [[nodiscard]] static GalleryConfiguration window()
    {
        return {
            .mode = GalleryMode::Expanded,
            .batchSize = 30,
            .fallbackPaths =
                {SearchPathDirectory::Desktop, SearchPathDirectory::Pictures, SearchPathDirectory::Downloads},
        };
    }

    /// The gallery's page in the settings window.
    [[nodiscard]] static GalleryConfiguration settings()
    {
        return {
            .mode = GalleryMode::Expanded,
            .batchSize = 60,
            .fallbackPaths = {SearchPathDirectory::Desktop},
        };
    }
};
