#pragma once

#include "Bookmark.h"
#include "FolderIdentity.h"

/// What a bookmark's bytes hold. Encoded as the magic word, the version and the fields in Qt's stream format,
/// followed by the SHA-256 of all that.
struct BookmarkData {
    /// As the system takes it.
    QByteArray path;
    Bookmark::Origin origin = Bookmark::Origin::Automatic;
    FolderIdentity identity;

    [[nodiscard]] QByteArray encoded() const;

    /// Errors of `Bookmark::errorDomain` for whatever `encoded` didn't make.
    [[nodiscard]] static Result<BookmarkData> decode(const QByteArray &bytes);
};
