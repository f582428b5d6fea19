#include "ThumbnailCache.h"

namespace {

/// What an entry takes beside its pixels, roughly: the path, the key and the bookkeeping.
constexpr qsizetype bytesBesidePixels = 512;

} // namespace

QString ThumbnailCache::key(const QString &path, int maximumPixelSize)
{
    return path + u'|' + QString::number(maximumPixelSize);
}

std::optional<QImage> ThumbnailCache::image(const QString &key) const
{
    const auto position = m_positions.constFind(key);
    if (position == m_positions.cend()) {
        return std::nullopt;
    }
    m_entries.splice(m_entries.begin(), m_entries, *position);
    return (*position)->image;
}

void ThumbnailCache::insert(const QString &path, int maximumPixelSize, const DecodedThumbnail &thumbnail)
{
    const QString key = ThumbnailCache::key(path, maximumPixelSize);
    erase(key);
    m_entries.push_front(
        {.origin = {.key = key, .path = path, .fileState = thumbnail.fileState}, .image = thumbnail.image});
    m_positions.insert(key, m_entries.begin());
    m_bytes += m_entries.front().bytes();
    while (m_bytes > m_limit) {
        erase(m_entries.back().origin.key);
    }
}

QList<ThumbnailCache::Origin> ThumbnailCache::origins() const
{
    QList<Origin> list;
    list.reserve(count());
    for (const Entry &entry : m_entries) {
        list.append(entry.origin);
    }
    return list;
}

bool ThumbnailCache::remove(const Origin &origin)
{
    const auto position = m_positions.constFind(origin.key);
    if (position == m_positions.cend() || (*position)->origin.fileState != origin.fileState) {
        return false;
    }
    erase(origin.key);
    return true;
}

void ThumbnailCache::clear()
{
    m_positions = {};
    m_entries.clear();
    m_bytes = 0;
}

void ThumbnailCache::erase(const QString &key)
{
    const auto position = m_positions.constFind(key);
    if (position == m_positions.cend()) {
        return;
    }
    const auto entry = *position;
    m_bytes -= entry->bytes();
    m_positions.erase(position);
    // Last: the key may be the entry's own.
    m_entries.erase(entry);
}

qsizetype ThumbnailCache::Entry::bytes() const
{
    return image.sizeInBytes() + bytesBesidePixels;
}
