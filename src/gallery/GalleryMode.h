#pragma once

/// How much a gallery shows: fixed by its host when the gallery is made.
enum class GalleryMode {
    /// In the menu bar's popover: a compact strip of recent screenshots.
    Embedded,
    /// In a window: the whole grid, with grid sizes, selection and batches.
    Expanded,
};
