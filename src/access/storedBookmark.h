#pragma once

#include "Bookmark.h"

#include <QByteArray>
#include <QString>
#include <QUrl>

#include <optional>

/// A folder's bookmark as the preferences keep it, under the key that is given. Any thread.
namespace storedBookmark {

/// None if nothing was ever stored there.
[[nodiscard]] std::optional<QByteArray> data(const QString &key);

void store(const QString &key, const QByteArray &bookmark);

/// Resolves the bookmark; if it is stale and still the stored one, stores a new one in its place.
[[nodiscard]] Result<QUrl> resolve(const QString &key, const QByteArray &bookmark);

/// Who chose the folder of the stored bookmark: a bookmark that is made in its place keeps that.
[[nodiscard]] Bookmark::Origin origin(const QString &key);

} // namespace storedBookmark
