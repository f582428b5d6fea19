#pragma once

#include <QCoreApplication>
#include <QObject>
#include <QPointer>
#include <QThreadPool>

#include <utility>

/// Where work runs that leaves the main thread. The queues don't share threads: a folder scan that hangs on
/// a dead network mount keeps neither a deletion nor a preview waiting.
enum class BackgroundQueue {
    /// Deletions and what follows a picked folder.
    Default,
    /// What a person is waiting for: previews, copies, where the folder picker starts.
    UserInitiated,
    /// The watcher's listings.
    Scan,
    /// Other looks into folders, the gallery's above all.
    Listing,
    /// The gallery's thumbnails: as many threads as the machine can run at once.
    Thumbnails,
};

namespace background {

QThreadPool &pool(BackgroundQueue queue);

/// Gives the queue as many threads as ever beside those that work now, which may hang for good. Main thread.
void startAfresh(BackgroundQueue queue);

/// Runs `deliver` on the main thread if `owner` is still alive there.
template <typename Deliver> void returnToMain(QPointer<QObject> owner, Deliver deliver)
{
    // Queued to the application, which outlives every owner, and checked there: a context object that dies
    // between the queueing and the call would race with this thread.
    QMetaObject::invokeMethod(
        QCoreApplication::instance(),
        [owner = std::move(owner), deliver = std::move(deliver)]() mutable {
            if (owner) {
                deliver();
            }
        },
        Qt::QueuedConnection);
}

} // namespace background

/// Runs `work` on `queue` and then `done(result)` on the main thread, unless `owner` is gone by then.
///
/// Values cross, objects don't: `work` captures copies and touches no QObject. Called on the main thread.
template <typename Work, typename Done>
void runInBackground(QObject *owner, BackgroundQueue queue, Work work, Done done)
{
    background::pool(queue).start(
        [owner = QPointer<QObject>(owner), work = std::move(work), done = std::move(done)]() mutable {
            auto result = work();
            background::returnToMain(
                std::move(owner),
                [done = std::move(done), result = std::move(result)]() mutable { done(std::move(result)); });
        });
}

template <typename Work, typename Done> void runInBackground(QObject *owner, Work work, Done done)
{
    runInBackground(owner, BackgroundQueue::Default, std::move(work), std::move(done));
}

/// As above for work that often has nothing to tell: it answers a `std::optional`, and an empty one neither
/// calls `done` nor wakes the main thread.
template <typename Work, typename Done>
void runInBackgroundIfAny(QObject *owner, BackgroundQueue queue, Work work, Done done)
{
    background::pool(queue).start([owner = QPointer<QObject>(owner), work = std::move(work),
                                   done = std::move(done)]() mutable {
        if (auto result = work()) {
            background::returnToMain(
                std::move(owner),
                [done = std::move(done), value = std::move(*result)]() mutable { done(std::move(value)); });
        }
    });
}

/// Called once, when the program ends: drops the previews, listings and thumbnails that haven't
/// begun, and waits a few
/// seconds for what is under way and for the deletions that were asked for. A thread that hangs longer ends
/// with the process.
void finishBackgroundWork();
