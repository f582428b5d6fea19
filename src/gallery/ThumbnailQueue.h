#pragma once

#include "ThumbnailPriority.h"

#include <QHash>
#include <QString>

#include <map>
#include <optional>

/// Decodes that haven't begun, in the order in which they shall. Main thread.
class ThumbnailQueue final {
public:
    /// Behind those of the same priority. `key` isn't in the queue.
    void add(const QString &key, ThumbnailPriority priority);

    /// Does nothing for a key that isn't in the queue.
    void remove(const QString &key);

    /// Keeps the place that it has if that is its priority already.
    void setPriority(const QString &key, ThumbnailPriority priority);

    /// Takes the first for which `mayBegin(key)` holds.
    template <typename MayBegin> std::optional<QString> takeFirst(MayBegin mayBegin)
    {
        for (const auto &[place, key] : m_keys) {
            if (mayBegin(key)) {
                QString taken = key;
                remove(taken);
                return taken;
            }
        }
        return std::nullopt;
    }

private:
    struct Place {
        ThumbnailPriority priority = ThumbnailPriority::Visible;
        quint64 number = 0;

        auto operator<=>(const Place &) const = default;
    };

    std::map<Place, QString> m_keys;
    QHash<QString, Place> m_places;
    quint64 m_lastNumber = 0;
};
