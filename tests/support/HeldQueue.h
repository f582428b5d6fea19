#pragma once

#include "runInBackground.h"

#include <QSemaphore>
#include <QThreadPool>

#include <memory>
#include <utility>

/// Keeps a queue from doing anything until it is released.
class HeldQueue final {
public:
    explicit HeldQueue(BackgroundQueue queue)
    {
        QThreadPool &pool = background::pool(queue);
        for (int thread = 0; thread < pool.maxThreadCount(); ++thread) {
            pool.start([held = m_held] { held->acquire(); });
        }
        m_threads = pool.maxThreadCount();
    }

    ~HeldQueue() { release(); }
    Q_DISABLE_COPY_MOVE(HeldQueue)

    void release() { m_held->release(std::exchange(m_threads, 0)); }

private:
    std::shared_ptr<QSemaphore> m_held = std::make_shared<QSemaphore>();
    int m_threads = 0;
};
