#pragma once

#include <QImage>
#include <QList>
#include <QSize>

/// Thumbnails of one image, made together.
struct ImageThumbnails {
    /// Of the image itself, upright, in pixels.
    QSize imageSize;
    /// In the order in which their sizes were asked for.
    QList<QImage> images;
};
