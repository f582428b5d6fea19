#include "ThumbnailLoader.h"

#include "FileManager.h"
#include "lowerThreadPriority.h"
#include "processMemory.h"
#include "runInBackground.h"

#include <algorithm>

namespace {

QThreadPool &pool()
{
    return background::pool(BackgroundQueue::Thumbnails);
}

QString folder(const QString &path)
{
    return path.first(std::max(path.lastIndexOf(u'/'), qsizetype(0)));
}

/// Those whose file isn't what it was.
QList<ThumbnailCache::Origin> changedOrigins(QList<ThumbnailCache::Origin> origins)
{
    QHash<QString, std::optional<FileState>> states;
    const auto stateNow = [&states](const QString &path) {
        auto known = states.find(path);
        if (known == states.end()) {
            const auto state = FileManager::defaultManager().fileState(path);
            known = states.insert(path, state ? std::optional(*state) : std::nullopt);
        }
        return *known;
    };
    origins.removeIf([&stateNow](const ThumbnailCache::Origin &origin) {
        return stateNow(origin.path) == origin.fileState;
    });
    return origins;
}

} // namespace

ThumbnailLoader &ThumbnailLoader::shared()
{
    // Never destroyed: decodes may come back to the end.
    static auto *const loader = new ThumbnailLoader;
    return *loader;
}

ThumbnailLoader::ThumbnailLoader(ThumbnailLoaderOptions options)
    : m_options(std::move(options)),
      m_cache(m_options.cacheLimit),
      m_running(m_options.hangLimit)
{
    m_releaseTimer.setSingleShot(true);
    connect(&m_releaseTimer, &QTimer::timeout, this, &ThumbnailLoader::release);
    m_hangTimer.setSingleShot(true);
    connect(&m_hangTimer, &QTimer::timeout, this, &ThumbnailLoader::findHanging);
}

ThumbnailLoader::~ThumbnailLoader()
{
    for (int lent = m_running.hangingCount(); lent > 0; --lent) {
        pool().reserveThread();
    }
}

int ThumbnailLoader::maximumPixelSize(qreal width, qreal height)
{
    constexpr int pixelsPerPoint = 2;
    return static_cast<int>(std::max(width, height) * pixelsPerPoint);
}

QImage ThumbnailLoader::cached(const QString &path, int maximumPixelSize) const
{
    return m_cache.image(ThumbnailCache::key(path, maximumPixelSize)).value_or(QImage());
}

std::unique_ptr<ThumbnailTicket>
ThumbnailLoader::load(const QString &path, int maximumPixelSize, Priority priority, Done done)
{
    const quint64 number = ++m_lastRequest;
    const QString key = ThumbnailCache::key(path, maximumPixelSize);
    if (const auto image = m_cache.image(key)) {
        m_requests.insert(number, {.key = {}, .priority = priority, .done = std::move(done)});
        QMetaObject::invokeMethod(
            this, [this, number, image = *image] { deliver({number}, image); }, Qt::QueuedConnection);
    } else {
        m_requests.insert(number, {.key = key, .priority = priority, .done = std::move(done)});
        Decode &decode = m_decodes[key];
        decode.requests.append(number);
        if (decode.requests.size() == 1 && !decode.hasBegun()) {
            decode.path = path;
            decode.maximumPixelSize = maximumPixelSize;
            m_queue.add(key, priority);
            beginDecodes();
        } else {
            m_queue.setPriority(key, mostUrgent(decode));
        }
    }
    return std::make_unique<ThumbnailTicket>(*this, number);
}

void ThumbnailLoader::takeBack(quint64 number)
{
    const Request request = m_requests.take(number);
    const auto decode = m_decodes.find(request.key);
    if (decode == m_decodes.end()) {
        return;
    }
    decode->requests.removeOne(number);
    if (decode->hasBegun()) {
        return;
    }
    if (decode->requests.isEmpty()) {
        m_queue.remove(request.key);
        m_decodes.erase(decode);
    } else {
        m_queue.setPriority(request.key, mostUrgent(*decode));
    }
}

void ThumbnailLoader::setPriority(quint64 number, Priority priority)
{
    const auto request = m_requests.find(number);
    if (request == m_requests.end()) {
        return;
    }
    request->priority = priority;
    const auto decode = m_decodes.constFind(request->key);
    if (decode != m_decodes.cend()) {
        m_queue.setPriority(request->key, mostUrgent(*decode));
    }
}

ThumbnailLoader::Priority ThumbnailLoader::mostUrgent(const Decode &decode) const
{
    Priority priority = Priority::Nearby;
    for (const quint64 number : decode.requests) {
        priority = std::min(priority, m_requests.constFind(number)->priority);
    }
    return priority;
}

/// As many as there are threads: what waits can still be dropped, or overtaken by what comes into sight.
void ThumbnailLoader::beginDecodes()
{
    const auto mayBegin = [this](const QString &key) {
        return m_running.mayBegin(folder(m_decodes.constFind(key)->path));
    };
    while (m_running.activeCount() < pool().maxThreadCount()) {
        const auto key = m_queue.takeFirst(mayBegin);
        if (!key) {
            break;
        }
        beginDecode(*key);
    }
    watchForHanging();
}

void ThumbnailLoader::beginDecode(const QString &key)
{
    Decode &decode = m_decodes[key];
    decode.number = ++m_lastDecode;
    m_running.begin(decode.number, folder(decode.path));
    runInBackground(
        this, BackgroundQueue::Thumbnails,
        [decode = m_options.decode, path = decode.path, maximumPixelSize = decode.maximumPixelSize] {
            // As many as there are processors: what is on screen has to move all the same.
            lowerThreadPriority();
            return decode(path, maximumPixelSize);
        },
        [this, number = decode.number, key](const DecodedThumbnail &thumbnail) {
            finishDecode(number, key, thumbnail);
        });
}

void ThumbnailLoader::finishDecode(quint64 number, const QString &key, const DecodedThumbnail &thumbnail)
{
    if (m_running.finish(number) == RunningDecodes::Outcome::AfterHanging) {
        pool().reserveThread();
    }
    const auto found = m_decodes.constFind(key);
    if (found == m_decodes.cend() || found->number != number) {
        // Forgotten, and maybe begun anew.
        beginDecodes();
        return;
    }
    const Decode decode = m_decodes.take(key);
    m_cache.insert(decode.path, decode.maximumPixelSize, thumbnail);
    if (m_uses == 0) {
        m_releaseTimer.start(m_options.releaseDelay);
    }
    // Before what waited for this one is called, which may take its time.
    beginDecodes();
    deliver(decode.requests, thumbnail.image);
}

void ThumbnailLoader::deliver(const QList<quint64> &requests, const QImage &image)
{
    for (const quint64 number : requests) {
        // Any of them may destroy the tickets of others.
        if (const auto done = m_requests.take(number).done) {
            done(image);
        }
    }
}

void ThumbnailLoader::watchForHanging()
{
    const auto left = m_running.untilNextHangs();
    if (!left) {
        m_hangTimer.stop();
    } else if (!m_hangTimer.isActive()) {
        m_hangTimer.start(*left);
    }
}

/// A thread that hangs doesn't count: another one takes its place.
void ThumbnailLoader::findHanging()
{
    for (int found = m_running.findHanging(); found > 0; --found) {
        pool().releaseThread();
    }
    beginDecodes();
}

void ThumbnailLoader::revalidate()
{
    if (m_isRevalidating) {
        m_mustRevalidateAgain = true;
        return;
    }
    QList<ThumbnailCache::Origin> origins = m_cache.origins();
    if (origins.isEmpty()) {
        return;
    }
    m_isRevalidating = true;
    runInBackground(
        this, BackgroundQueue::Listing, [origins = std::move(origins)] { return changedOrigins(origins); },
        [this](const QList<ThumbnailCache::Origin> &changed) { forget(changed); });
}

void ThumbnailLoader::forget(const QList<ThumbnailCache::Origin> &changed)
{
    m_isRevalidating = false;
    QSet<QString> paths;
    for (const ThumbnailCache::Origin &origin : changed) {
        // What was decoded anew in the meantime stays.
        if (m_cache.remove(origin)) {
            paths.insert(origin.path);
        }
    }
    forgetDecodes(paths);
    if (std::exchange(m_mustRevalidateAgain, false)) {
        revalidate();
    }
    for (const QString &path : std::as_const(paths)) {
        Q_EMIT dropped(path);
    }
}

/// Those that have begun may have seen the file as it was: who waits for one gets what is decoded anew.
void ThumbnailLoader::forgetDecodes(const QSet<QString> &paths)
{
    m_decodes.removeIf(
        [&paths](const auto &decode) { return paths.contains(decode->path) && decode->requests.isEmpty(); });
    for (auto decode = m_decodes.begin(); decode != m_decodes.end(); ++decode) {
        if (decode->hasBegun() && paths.contains(decode->path)) {
            decode->number = 0;
            m_queue.add(decode.key(), mostUrgent(*decode));
        }
    }
    beginDecodes();
}

std::unique_ptr<ThumbnailUse> ThumbnailLoader::use()
{
    return std::make_unique<ThumbnailUse>(*this);
}

void ThumbnailLoader::beginUse()
{
    ++m_uses;
    m_releaseTimer.stop();
}

void ThumbnailLoader::endUse()
{
    if (--m_uses == 0) {
        m_releaseTimer.start(m_options.releaseDelay);
    }
}

void ThumbnailLoader::release()
{
    m_cache.clear();
    processMemory::returnUnused();
}
