#pragma once

#include <QSize>

#include <algorithm>

/// More than this is refused: nobody's screenshot, but perhaps somebody's trap.
inline constexpr qint64 mostImagePixels = qint64(1) << 28;

[[nodiscard]] inline bool isAcceptableImageSize(QSize size)
{
    return !size.isEmpty() && qint64(size.width()) * size.height() <= mostImagePixels;
}

/// `size` with its longer side at most `maximum`, and no side below 1.
[[nodiscard]] inline QSize thumbnailSize(QSize size, int maximum)
{
    if (std::max(size.width(), size.height()) <= maximum) {
        return size;
    }
    return size.scaled(maximum, maximum, Qt::KeepAspectRatio).expandedTo({1, 1});
}
