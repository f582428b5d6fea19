#pragma once

#include "ThumbnailPriority.h"

#include <QPointer>

class ThumbnailLoader;

/// A thumbnail that was asked for. Destroying it takes the request back: nothing is delivered any more, and
/// the decode is dropped if it hasn't begun and nobody else waits for it. Main thread.
class ThumbnailTicket final {
public:
    ThumbnailTicket(ThumbnailLoader &loader, quint64 number);
    ~ThumbnailTicket();
    Q_DISABLE_COPY_MOVE(ThumbnailTicket)

    /// Moves the decode in the queue if it hasn't begun.
    void setPriority(ThumbnailPriority priority);

private:
    QPointer<ThumbnailLoader> m_loader;
    quint64 m_number;
};
