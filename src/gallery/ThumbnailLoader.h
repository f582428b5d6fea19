#pragma once

#include "DecodedThumbnail.h"
#include "RunningDecodes.h"
#include "ThumbnailCache.h"
#include "ThumbnailPriority.h"
#include "ThumbnailQueue.h"
#include "ThumbnailTicket.h"
#include "ThumbnailUse.h"

#include <QHash>
#include <QImage>
#include <QList>
#include <QObject>
#include <QSet>
#include <QTimer>

#include <chrono>
#include <functional>
#include <memory>

/// What a loader works with, and when it loses patience.
struct ThumbnailLoaderOptions {
    ThumbnailDecoder decode = &decodeThumbnail;
    qsizetype cacheLimit = ThumbnailCache::defaultLimit; ///< in bytes
    /// From the end of the last use until everything is dropped: who goes from the popover to the window, or
    /// opens the popover again, finds his thumbnails.
    std::chrono::milliseconds releaseDelay = std::chrono::seconds(5);
    /// After which a decode counts as hanging.
    std::chrono::milliseconds hangLimit = std::chrono::seconds(2);
};

/// Thumbnails of files: out of memory, or decoded in the background by as many threads as the machine has.
///
/// The process has one, made at its first use. Main thread; the decodes run on a queue of their own. What is
/// in sight is decoded first, and of several requests for the same thumbnail one is decoded. That a file has
/// no thumbnail is remembered like one. At rest there is nothing: no thumbnail, no thread and no timer.
class ThumbnailLoader final : public QObject {
    Q_OBJECT

public:
    using Priority = ThumbnailPriority;
    using Done = std::function<void(const QImage &image)>;

    [[nodiscard]] static ThumbnailLoader &shared();

    explicit ThumbnailLoader(ThumbnailLoaderOptions options = {});
    ~ThumbnailLoader() override;
    Q_DISABLE_COPY_MOVE(ThumbnailLoader)

    /// In pixels, for a cell of so many points: twice its larger side.
    [[nodiscard]] static int maximumPixelSize(qreal width, qreal height);

    /// The thumbnail if it is in memory; else a null image.
    [[nodiscard]] QImage cached(const QString &path, int maximumPixelSize) const;

    /// Calls `done` on a later turn of the loop, with a null image if the file can't be read as an image; not
    /// at all once the ticket is destroyed.
    [[nodiscard]] std::unique_ptr<ThumbnailTicket>
    load(const QString &path, int maximumPixelSize, Priority priority, Done done);

    /// Looks in the background whether the files are still as they were, and forgets what was made of those
    /// that changed or went.
    void revalidate();

    /// To be held while a gallery is on screen. Some seconds after the last one has gone, everything is
    /// forgotten and the memory given back.
    [[nodiscard]] std::unique_ptr<ThumbnailUse> use();

    /// What is in memory now.
    [[nodiscard]] const ThumbnailCache &cache() const { return m_cache; }

Q_SIGNALS:
    /// `revalidate` found the file at the path changed or gone: what is shown of it should be asked for anew.
    void dropped(const QString &path);

private:
    friend class ThumbnailTicket;
    friend class ThumbnailUse;

    /// What one decode is for; once it has begun, also without anyone who waits.
    struct Decode {
        QString path;
        int maximumPixelSize = 0;
        QList<quint64> requests;
        quint64 number = 0; ///< 0 until it has begun

        [[nodiscard]] bool hasBegun() const { return number != 0; }
    };

    struct Request {
        QString key; ///< empty: in memory already
        Priority priority = Priority::Visible;
        Done done;
    };

    void takeBack(quint64 number);
    void setPriority(quint64 number, Priority priority);
    [[nodiscard]] Priority mostUrgent(const Decode &decode) const;
    void beginDecodes();
    void beginDecode(const QString &key);
    void finishDecode(quint64 number, const QString &key, const DecodedThumbnail &thumbnail);
    void deliver(const QList<quint64> &requests, const QImage &image);

    void watchForHanging();
    void findHanging();

    void forget(const QList<ThumbnailCache::Origin> &changed);
    void forgetDecodes(const QSet<QString> &paths);

    void beginUse();
    void endUse();
    void release();

    ThumbnailLoaderOptions m_options;
    ThumbnailCache m_cache;
    ThumbnailQueue m_queue;
    RunningDecodes m_running;
    QHash<QString, Decode> m_decodes;   // by key
    QHash<quint64, Request> m_requests; // by number
    quint64 m_lastRequest = 0;
    quint64 m_lastDecode = 0;
    bool m_isRevalidating = false;
    bool m_mustRevalidateAgain = false;
    int m_uses = 0;
    QTimer m_releaseTimer;
    QTimer m_hangTimer;
};
