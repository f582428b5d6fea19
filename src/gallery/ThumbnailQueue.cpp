#include "ThumbnailQueue.h"

void ThumbnailQueue::add(const QString &key, ThumbnailPriority priority)
{
    const Place place = {.priority = priority, .number = ++m_lastNumber};
    m_keys.emplace(place, key);
    m_places.insert(key, place);
}

void ThumbnailQueue::remove(const QString &key)
{
    const auto place = m_places.constFind(key);
    if (place != m_places.cend()) {
        m_keys.erase(*place);
        m_places.erase(place);
    }
}

void ThumbnailQueue::setPriority(const QString &key, ThumbnailPriority priority)
{
    const auto place = m_places.constFind(key);
    if (place != m_places.cend() && place->priority != priority) {
        remove(key);
        add(key, priority);
    }
}
