#pragma once

#include <QPoint>

#include <functional>

class QWidget;

/// What the context menu of a screenshot can do with it. Without a way to the Trash, that item is disabled.
struct GalleryItemActions {
    std::function<void()> copy;
    std::function<void()> open;
    std::function<void()> showInFileManager;
    std::function<void()> moveToTrash;
};

/// Pops the menu up at `position` on the screen. It goes when something is chosen, or with its owner.
void popUpGalleryItemMenu(QWidget &owner, QPoint position, const GalleryItemActions &actions);
