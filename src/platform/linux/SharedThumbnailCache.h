#pragma once

#include "sharedThumbnailEntry.h"

#include <QByteArray>
#include <QImage>

#include <optional>

/// The entries of one file in the thumbnail cache that the desktop's programs share: the freedesktop
/// Thumbnail Managing Standard, version 0.9. Any thread, at the same time as other programs.
class SharedThumbnailCache final {
public:
    /// `path` as the system takes it. Of a relative one, or one inside the cache, there are no entries.
    explicit SharedThumbnailCache(const QByteArray &path);

    /// The side of the square that entries of the smallest sufficient class fit into, in pixels. None if even
    /// the largest are too small for a thumbnail of `maximumPixelSize`.
    [[nodiscard]] static std::optional<int> entrySide(int maximumPixelSize);

    /// The thumbnail that `ImageSource::thumbnail` would make of the file in this state, made of an entry.
    [[nodiscard]] std::optional<QImage> thumbnail(const FileState &state, int maximumPixelSize) const;

    /// Whether an entry of the file in this state, which is read from now on, can be told from one of a later
    /// state. Not of one that was modified just now: its time may stay the same at the next change.
    [[nodiscard]] bool mayHold(const FileState &state) const;

    /// Stores an entry of the class that `entrySide` belongs to, if `mayHold` held before the file was read
    /// and the file at the path still is in this state.
    void store(
        const QImage &thumbnail, int entrySide, const FileState &state,
        const sharedThumbnailEntry::ImageProperties &properties) const;

    /// For a file that has gone.
    void removeAll() const;

private:
    [[nodiscard]] QByteArray entryPath(const char *folder) const;

    QByteArray m_root; // of the cache; empty: there are no entries
    QByteArray m_path;
    QByteArray m_uri;
    QByteArray m_name; // of each entry
};
