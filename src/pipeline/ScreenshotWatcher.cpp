#include "ScreenshotWatcher.h"

#include "Bookmark.h"
#include "FileManager.h"
#include "Preferences.h"
#include "SecurityScopedAccess.h"
#include "UserDefaults.h"
#include "print.h"
#include "runInBackground.h"
#include "screenshotPath.h"

#include <QDateTime>

#include <algorithm>

namespace {

constexpr SearchPathDirectory standardFolders[] = {
    SearchPathDirectory::Desktop, SearchPathDirectory::Pictures, SearchPathDirectory::Downloads};

/// The folder that the user granted, if its bookmark still leads straight to it.
std::optional<QUrl> bookmarkedFolder()
{
    const auto data = UserDefaults::standard().data(preferences::desktopFolderBookmark);
    if (!data) {
        return std::nullopt;
    }
    const auto bookmark = Bookmark::resolve(*data);
    if (!bookmark) {
        print(QStringLiteral("Could not resolve bookmark: ") + bookmark.error().localizedDescription);
        return std::nullopt;
    }
    return bookmark->isStale ? std::nullopt : std::optional(bookmark->url);
}

QList<QUrl> watchedFolders(const FileManager &fileManager)
{
    if (const auto folder = bookmarkedFolder()) {
        return {*folder};
    }
    QList<QUrl> folders;
    for (const SearchPathDirectory directory : standardFolders) {
        const QList<QUrl> urls = fileManager.urls(directory);
        // Where the capture tool saves may well be one of the other two.
        if (!urls.isEmpty() && !folders.contains(urls.constFirst())) {
            folders.append(urls.constFirst());
        }
    }
    return folders;
}

/// Whether the file is younger than `milliseconds`; not known counts as yes.
bool isYoungerThan(const std::optional<QDateTime> &creationDate, qint64 milliseconds)
{
    return !creationDate || *creationDate > QDateTime::currentDateTime().addMSecs(-milliseconds);
}

bool isStillBeingWritten(const FileManager &fileManager, const QString &path)
{
    const auto attributes = fileManager.attributesOfItem(path);
    return attributes && attributes->isRegularFile &&
           isYoungerThan(attributes->creationDate, ScreenshotWatcher::writingGraceMilliseconds) &&
           fileManager.isOpenForWriting(path);
}

} // namespace

ScreenshotWatcher::ScreenshotWatcher(QObject *parent)
    : QObject(parent),
      m_fileManager(&FileManager::defaultManager())
{
    startWatching();
}

ScreenshotWatcher::~ScreenshotWatcher() = default;

ScreenshotScan
ScreenshotWatcher::collectScreenshotPaths(const FileManager &fileManager, const ScreenshotScan &previous)
{
    ScreenshotScan scan;
    for (const QUrl &folder : watchedFolders(fileManager)) {
        if (auto found = scanDirectory(fileManager, folder, previous.find(folder.path()))) {
            scan.folders.append(std::move(*found));
        }
    }
    if (scan.isTakenOverFrom(previous)) {
        return previous;
    }
    for (const FolderScan &folder : std::as_const(scan.folders)) {
        // The first append shares the list: one folder alone costs no copy.
        scan.paths.append(folder.paths);
    }
    return scan;
}

std::optional<FolderScan>
ScreenshotWatcher::scanDirectory(const FileManager &fileManager, const QUrl &url, const FolderScan *previous)
{
    const auto access = SecurityScopedAccess::start(url);
    FolderScan scan{.folder = url.path(), .state = {}, .paths = {}};
    if (previous != nullptr) {
        const auto state = fileManager.directoryState(scan.folder);
        if (state && state->isUnchangedSince(previous->state)) {
            return *previous;
        }
    }
    const QString prefix = scan.folder.endsWith(u'/') ? scan.folder : QString(scan.folder + u'/');
    const auto state = fileManager.contentsOfDirectory(
        scan.folder, FileManager::ListingOption::SkipsHiddenFiles, [&](QByteArrayView name) {
            if (auto path = screenshotPath(prefix, name)) {
                scan.paths.append(std::move(*path));
            }
        });
    if (!state) {
        if (!state.error().isCocoa(Error::FileNoPermission) &&
            !state.error().isCocoa(Error::FileNoSuchFile)) {
            print(
                QStringLiteral("Warning: Could not access directory ") + scan.folder + QStringLiteral(": ") +
                state.error().localizedDescription);
        }
        return std::nullopt;
    }
    scan.state = *state;
    if (previous != nullptr && scan.paths == previous->paths) {
        scan.paths = previous->paths;
    }
    return scan;
}

void ScreenshotWatcher::startWatching()
{
    // The scans of a watcher before may hang in its folders, which is reason enough to watch another one.
    background::startAfresh(BackgroundQueue::Scan);
    runInBackground(
        this, BackgroundQueue::Scan,
        [fileManager = m_fileManager] { return collectScreenshotPaths(*fileManager, {}); },
        [this](ScreenshotScan scan) {
            m_lastKnownScreenshots = QSet<QString>(scan.paths.cbegin(), scan.paths.cend());
            m_lastScan = std::move(scan);
            startTimer();
            Q_EMIT didApplyScan();
        });
}

void ScreenshotWatcher::startTimer()
{
    if (m_timer) {
        return;
    }
    m_timer = std::make_unique<QTimer>();
    m_timer->setTimerType(Qt::PreciseTimer);
    connect(m_timer.get(), &QTimer::timeout, this, &ScreenshotWatcher::checkForNewScreenshots);
    m_timer->start(pollInterval);
}

void ScreenshotWatcher::checkForNewScreenshots()
{
    const quint64 sequence = ++m_startedScans;
    runInBackgroundIfAny(
        this, BackgroundQueue::Scan,
        [fileManager = m_fileManager,
         previous = Baseline{.scan = m_lastScan, .known = m_lastKnownScreenshots, .isSettled = m_isSettled}] {
            return findNewScreenshots(*fileManager, previous);
        },
        [this, sequence](Outcome outcome) { apply(sequence, std::move(outcome)); });
}

std::optional<ScreenshotWatcher::Outcome>
ScreenshotWatcher::findNewScreenshots(const FileManager &fileManager, const Baseline &previous)
{
    ScreenshotScan scan = collectScreenshotPaths(fileManager, previous.scan);
    if (previous.isSettled && scan.isTakenOverFrom(previous.scan)) {
        return std::nullopt;
    }
    Outcome outcome;
    auto &[baseline, added] = outcome;
    baseline.known.reserve(scan.paths.size());
    // Folders keep their order, so most paths are found known without a look into the set.
    auto expected = previous.isSettled ? previous.scan.paths.cbegin() : previous.scan.paths.cend();
    for (const QString &path : std::as_const(scan.paths)) {
        const bool isExpected = expected != previous.scan.paths.cend() && *expected == path;
        expected += isExpected ? 1 : 0;
        const bool isAdded = !isExpected && !previous.known.contains(path);
        if (isAdded && isStillBeingWritten(fileManager, path)) {
            baseline.isSettled = false;
            continue;
        }
        baseline.known.insert(path);
        if (isAdded) {
            added.append(path);
        }
    }
    baseline.scan = std::move(scan);
    return outcome;
}

void ScreenshotWatcher::apply(quint64 sequence, Outcome outcome)
{
    if (sequence < m_lastAppliedScan) {
        return;
    }
    m_lastAppliedScan = sequence;
    // A scan that overlapped with the one applied before may have found the same files.
    outcome.added.removeIf([this](const QString &path) { return m_lastKnownScreenshots.contains(path); });
    m_lastKnownScreenshots = std::move(outcome.baseline.known);
    m_lastScan = std::move(outcome.baseline.scan);
    m_isSettled = outcome.baseline.isSettled;

    const QDateTime cutoff = QDateTime::currentDateTime().addMSecs(-freshnessMilliseconds);
    for (const QString &path : std::as_const(outcome.added)) {
        auto *const delegate = m_delegate.get();
        if (delegate != nullptr && isFresh(path, cutoff)) {
            delegate->watcherDidDetectScreenshot(path);
        }
    }
    Q_EMIT didApplyScan();
}

bool ScreenshotWatcher::isFresh(const QString &path, const QDateTime &cutoff) const
{
    const auto attributes = m_fileManager->attributesOfItem(path);
    const auto attribute = attributes ? attributes->creationDate : std::nullopt;
    if (attribute && *attribute > cutoff) {
        return true;
    }
    const auto creationDate = m_fileManager->creationDate(QUrl::fromLocalFile(path));
    return !creationDate || !creationDate->has_value();
}
