#include "runInBackground.h"

#include <QDeadlineTimer>
#include <QThread>

#include <array>

namespace background {

namespace {

constexpr int queueCount = 5;
constexpr int threadsOfAQueue = 2;

/// How long the end of the program waits for work under way: a move to the Trash may be waiting two seconds
/// for a writer, and a scan may hang for good on a dead mount.
constexpr int shutDownMilliseconds = 3000;

/// Thumbnails come in bursts: their threads needn't wait as long as others for the next one.
constexpr int thumbnailThreadExpiry = 5000; // milliseconds

std::array<QThreadPool, queueCount> &pools()
{
    // Never destroyed: a thread that hangs in the kernel must not keep the program from ending.
    static auto *const instances = [] {
        auto *const created = new std::array<QThreadPool, queueCount>;
        for (QThreadPool &pool : *created) {
            pool.setMaxThreadCount(threadsOfAQueue);
        }
        QThreadPool &thumbnails = (*created)[static_cast<size_t>(BackgroundQueue::Thumbnails)];
        thumbnails.setMaxThreadCount(QThread::idealThreadCount());
        thumbnails.setExpiryTimeout(thumbnailThreadExpiry);
        return created;
    }();
    return *instances;
}

} // namespace

QThreadPool &pool(BackgroundQueue queue)
{
    return pools()[static_cast<size_t>(queue)];
}

void startAfresh(BackgroundQueue queue)
{
    QThreadPool &threads = pool(queue);
    threads.setMaxThreadCount(threads.activeThreadCount() + threadsOfAQueue);
}

} // namespace background

void finishBackgroundWork()
{
    background::pool(BackgroundQueue::UserInitiated).clear();
    background::pool(BackgroundQueue::Scan).clear();
    background::pool(BackgroundQueue::Listing).clear();
    background::pool(BackgroundQueue::Thumbnails).clear();
    const QDeadlineTimer deadline(background::shutDownMilliseconds);
    for (QThreadPool &pool : background::pools()) {
        pool.waitForDone(static_cast<int>(deadline.remainingTime()));
    }
}
