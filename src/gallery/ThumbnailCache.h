#pragma once

#include "DecodedThumbnail.h"

#include <QHash>
#include <QList>
#include <QString>

#include <list>
#include <optional>

/// Thumbnails in memory up to a limit in bytes; what wasn't asked for the longest goes first. Remembers of
/// files without a thumbnail that they have none. Main thread.
class ThumbnailCache final {
public:
    /// Enough for some 80 of the largest thumbnails (400 pixels wide) or 500 of the smallest (160): several
    /// screens full of each, and little beside what the windows themselves take while a gallery is shown.
    static constexpr qsizetype defaultLimit = qsizetype(32) * 1024 * 1024;

    /// A file as it was when the thumbnail at the key was made of it.
    struct Origin {
        QString key;
        QString path;
        std::optional<FileState> fileState;
    };

    explicit ThumbnailCache(qsizetype limit = defaultLimit) : m_limit(limit) {}

    /// The path, "|" and the maximum size in pixels.
    [[nodiscard]] static QString key(const QString &path, int maximumPixelSize);

    /// None: nothing is known. A null image: the file has no thumbnail.
    [[nodiscard]] std::optional<QImage> image(const QString &key) const;

    /// In place of what is there. An image larger than the limit isn't kept.
    void insert(const QString &path, int maximumPixelSize, const DecodedThumbnail &thumbnail);

    [[nodiscard]] QList<Origin> origins() const;

    /// Removes the entry if it is still that of `origin`; answers whether it was.
    bool remove(const Origin &origin);

    void clear();

    [[nodiscard]] qsizetype count() const { return m_positions.size(); }

    /// Of all images and what belongs to them.
    [[nodiscard]] qsizetype bytes() const { return m_bytes; }

private:
    struct Entry {
        Origin origin;
        QImage image;

        [[nodiscard]] qsizetype bytes() const;
    };

    using Entries = std::list<Entry>;

    void erase(const QString &key);

    qsizetype m_limit;
    qsizetype m_bytes = 0;
    // What was asked for last stands first. Mutable: asking changes which one goes next, and nothing else.
    mutable Entries m_entries;
    QHash<QString, Entries::iterator> m_positions;
};
