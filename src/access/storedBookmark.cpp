#include "storedBookmark.h"

#include "UserDefaults.h"
#include "print.h"

namespace {

void refreshStaleBookmark(const QString &key, const QUrl &url, Bookmark::Origin origin)
{
    const auto bookmark = Bookmark::make(url, origin);
    if (!bookmark) {
        print(QStringLiteral("Failed to refresh stale bookmark: ") + bookmark.error().description());
        return;
    }
    storedBookmark::store(key, *bookmark);
    print(QStringLiteral("Refreshed stale bookmark for: ") + url.path());
}

} // namespace

std::optional<QByteArray> storedBookmark::data(const QString &key)
{
    return UserDefaults::standard().data(key);
}

void storedBookmark::store(const QString &key, const QByteArray &bookmark)
{
    UserDefaults::standard().setData(key, bookmark);
}

Result<QUrl> storedBookmark::resolve(const QString &key, const QByteArray &bookmark)
{
    const auto resolved = Bookmark::resolve(bookmark);
    if (!resolved) {
        return std::unexpected(resolved.error());
    }
    if (resolved->isStale) {
        refreshStaleBookmark(key, resolved->url, Bookmark::origin(bookmark));
    }
    return resolved->url;
}

Bookmark::Origin storedBookmark::origin(const QString &key)
{
    const auto stored = data(key);
    return stored ? Bookmark::origin(*stored) : Bookmark::Origin::Automatic;
}
