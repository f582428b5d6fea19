#pragma once

#include "GalleryGridSize.h"

#include <QWidget>

#include <functional>

class GalleryGrid;

/// What a gallery's controls do beside what its model does.
struct GalleryActions {
    std::function<void()> refresh;
    std::function<void()> expandToFull;
    std::function<void()> cancelSelection;
    std::function<void(GalleryGridSize)> chooseGridSize;
    std::function<void()> openAccessSettings;
};

/// What a gallery shows beside what its model holds.
struct GalleryViewState {
    GalleryGridSize gridSize = GalleryGridSize::Standard;
    /// Whether the watched folder can be read, as far as it is known.
    bool hasFolderAccess = true;
};

/// The arrangement of a gallery's controls around its grid: one for the popover, one for windows. It reads
/// the model when it is told to render, and keeps nothing of it.
class GalleryLayout : public QWidget {
    Q_OBJECT

public:
    using QWidget::QWidget;

    virtual void render(const GalleryViewState &state) = 0;

    [[nodiscard]] virtual GalleryGrid &grid() const = 0;
};
