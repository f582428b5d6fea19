#include "storedBookmark.h"

#include "UserDefaults.h"
#include "print.h"

namespace {

void refreshStaleBookmark(const QString &key, const QByteArray &stale, const QUrl &url)
{
    const auto bookmark = Bookmark::make(url, Bookmark::origin(stale));
    if (!bookmark) {
        print(QStringLiteral("Failed to refresh stale bookmark: ") + bookmark.error().description());
        return;
    }
    // The user may have picked another folder while this one was looked for.
    if (storedBookmark::data(key) != stale) {
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
        refreshStaleBookmark(key, bookmark, resolved->url);
    }
    return resolved->url;
}

Bookmark::Origin storedBookmark::origin(const QString &key)
{
    const auto stored = data(key);
    return stored ? Bookmark::origin(*stored) : Bookmark::Origin::Automatic;
}
