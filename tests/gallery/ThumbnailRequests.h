#pragma once

#include "ThumbnailLoader.h"
#include "runInBackground.h"

#include <QImage>
#include <QList>
#include <QStringList>
#include <QTest>
#include <QTestEventLoop>
#include <QThreadPool>

#include <memory>
#include <vector>

/// What tests of thumbnails have in common.
namespace thumbnails {

inline constexpr int patience = 30'000; // milliseconds
inline constexpr int pixels = 100;      // that are asked for where a test names no size

/// Where no file is.
[[nodiscard]] inline QString numbered(int number)
{
    return QStringLiteral("/shots/%1.png").arg(number);
}

[[nodiscard]] inline QThreadPool &pool()
{
    return background::pool(BackgroundQueue::Thumbnails);
}

} // namespace thumbnails

/// What a test has asked thumbnail loaders for, and what it was given.
class ThumbnailRequests final {
public:
    using Tickets = std::vector<std::unique_ptr<ThumbnailTicket>>;

    /// A request that counts in `done` and keeps its image in `images`.
    void load(
        ThumbnailLoader &loader, const QString &path, ThumbnailPriority priority = ThumbnailPriority::Visible,
        int size = thumbnails::pixels)
    {
        m_tickets.push_back(loader.load(path, size, priority, [this, path](const QImage &image) {
            m_done.append(path);
            m_images.append(image);
            if (m_done.size() == m_awaited) {
                QTestEventLoop::instance().exitLoop();
            }
        }));
    }

    /// Until so many are served. Not by QTRY, which looks every ten milliseconds and sleeps in between.
    void await(qsizetype count)
    {
        m_awaited = count;
        QTestEventLoop::instance().enterLoopMSecs(thumbnails::patience);
    }

    /// Takes back what is left, and ends what is under way.
    void clear()
    {
        m_tickets.clear();
        m_done.clear();
        m_images.clear();
        m_awaited = -1;
        thumbnails::pool().waitForDone();
        QCOMPARE(thumbnails::pool().activeThreadCount(), 0);
    }

    /// In the order in which they were asked for.
    [[nodiscard]] Tickets &tickets() { return m_tickets; }

    /// In the order in which they were served.
    [[nodiscard]] const QStringList &done() const { return m_done; }

    [[nodiscard]] const QList<QImage> &images() const { return m_images; }

private:
    Tickets m_tickets;
    QStringList m_done;
    QList<QImage> m_images;
    qsizetype m_awaited = -1;
};
