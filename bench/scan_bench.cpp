// A tick of the watcher, beside what it can't do without: a bare `statx` for a folder that hasn't changed, a
// bare `readdir` loop for one that must be listed.

#include "Bookmark.h"
#include "FileManager.h"
#include "Preferences.h"
#include "ScreenshotWatcher.h"
#include "TemporaryFolder.h"
#include "UserDefaults.h"

#include <benchmark/benchmark.h>

#include <QCoreApplication>
#include <QDeadlineTimer>
#include <QDir>
#include <QThread>

#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>

#include <cstdlib>

namespace {

const TemporaryFolder &home()
{
    static const TemporaryFolder folder;
    return folder;
}

const QString &folder(int count, int stride)
{
    static QHash<std::pair<int, int>, QString> folders;
    QString &path = folders[{count, stride}];
    if (path.isEmpty()) {
        path = home().makeFilled(QStringLiteral("%1-%2").arg(count).arg(stride), count, stride);
    }
    return path;
}

/// The baseline of a watcher that has settled on what is there: two seconds after the last change a listing
/// is complete.
ScreenshotWatcher::Baseline settledBaseline()
{
    const FileManager &fileManager = FileManager::defaultManager();
    ScreenshotWatcher::Baseline baseline;
    const auto isSettled = [&baseline] {
        return !baseline.scan.folders.isEmpty() &&
               std::ranges::all_of(baseline.scan.folders, [](const FolderScan &scan) {
                   return scan.state.listingIsComplete;
               });
    };
    while (!isSettled()) {
        QThread::msleep(100);
        if (auto outcome = ScreenshotWatcher::findNewScreenshots(fileManager, baseline)) {
            baseline = std::move(outcome->baseline);
        }
    }
    return baseline;
}

void useAsBookmarkedFolder(const QString &path)
{
    const auto bookmark = Bookmark::make(QUrl::fromLocalFile(path), Bookmark::Origin::Automatic);
    UserDefaults::standard().setData(preferences::desktopFolderBookmark, *bookmark);
}

void bareStatx(benchmark::State &state)
{
    const QByteArray path = folder(10'000, 20).toUtf8();
    for (auto _ : state) {
        struct statx attributes;
        benchmark::DoNotOptimize(::statx(AT_FDCWD, path.constData(), 0, STATX_BASIC_STATS, &attributes));
    }
}

void unchangedFolder(benchmark::State &state)
{
    const QString path = folder(10'000, 20);
    useAsBookmarkedFolder(path);
    const auto baseline = settledBaseline();
    const QUrl url = QUrl::fromLocalFile(path);
    const FolderScan &previous = baseline.scan.folders.constFirst();
    for (auto _ : state) {
        const auto scan = ScreenshotWatcher::scanDirectory(FileManager::defaultManager(), url, &previous);
        if (!scan->isTakenOverFrom(previous)) {
            state.SkipWithError("The folder was listed");
        }
    }
}

void unchangedTick(benchmark::State &state)
{
    const auto baseline = settledBaseline();
    for (auto _ : state) {
        if (ScreenshotWatcher::findNewScreenshots(FileManager::defaultManager(), baseline)) {
            state.SkipWithError("The tick found a change");
        }
    }
}

void unchangedTickWithBookmark(benchmark::State &state)
{
    useAsBookmarkedFolder(folder(10'000, 20));
    unchangedTick(state);
}

void unchangedTickOfStandardFolders(benchmark::State &state)
{
    UserDefaults::standard().setData(preferences::desktopFolderBookmark, {});
    QFile::remove(home().path() + QStringLiteral("/.config/Deskbroom/Deskbroom.json"));
    UserDefaults::standard().setInteger(preferences::timeframeInMinutes, 5);
    QDir().mkpath(home().path() + QStringLiteral("/.config"));
    QFile directories(home().path() + QStringLiteral("/.config/user-dirs.dirs"));
    if (directories.open(QIODevice::WriteOnly)) {
        directories.write("XDG_DESKTOP_DIR=\"$HOME/10000-20\"\nXDG_PICTURES_DIR=\"$HOME/1000-20\"\n"
                          "XDG_DOWNLOAD_DIR=\"$HOME/1000-1\"\n");
    }
    directories.close();
    benchmark::DoNotOptimize(folder(10'000, 20));
    benchmark::DoNotOptimize(folder(1'000, 20));
    benchmark::DoNotOptimize(folder(1'000, 1));
    unchangedTick(state);
}

void bareReaddir(benchmark::State &state)
{
    const QByteArray path =
        folder(static_cast<int>(state.range(0)), static_cast<int>(state.range(1))).toUtf8();
    for (auto _ : state) {
        DIR *const stream = ::opendir(path.constData());
        if (stream == nullptr) {
            state.SkipWithError("The folder can't be opened");
            break;
        }
        int count = 0;
        while (::readdir(stream) != nullptr) {
            ++count;
        }
        ::closedir(stream);
        benchmark::DoNotOptimize(count);
    }
}

/// A tick that must list: one screenshot is new, so that the sets really differ.
void listingTick(benchmark::State &state)
{
    useAsBookmarkedFolder(folder(static_cast<int>(state.range(0)), static_cast<int>(state.range(1))));
    const FileManager &fileManager = FileManager::defaultManager();
    ScreenshotWatcher::Baseline baseline = ScreenshotWatcher::findNewScreenshots(fileManager, {})->baseline;
    baseline.known.remove(baseline.scan.paths.constFirst());
    baseline.scan.paths.removeFirst();
    baseline.scan.folders.front().paths.removeFirst();
    baseline.scan.folders.front().state.listingIsComplete = false;
    for (auto _ : state) {
        const auto outcome = ScreenshotWatcher::findNewScreenshots(fileManager, baseline);
        if (outcome->added.size() != 1) {
            state.SkipWithError("The tick should find one new screenshot");
        }
    }
}

void sizes(benchmark::internal::Benchmark *benchmark)
{
    for (const int stride : {20, 1}) {
        for (const int count : {1'000, 10'000, 100'000}) {
            benchmark->Args({count, stride});
        }
    }
    benchmark->ArgNames({"files", "screenshot_in"})->Unit(benchmark::kMicrosecond);
}

BENCHMARK(bareStatx);
BENCHMARK(unchangedFolder);
BENCHMARK(unchangedTickWithBookmark)->Unit(benchmark::kMicrosecond);
BENCHMARK(unchangedTickOfStandardFolders)->Unit(benchmark::kMicrosecond);
BENCHMARK(bareReaddir)->Apply(sizes);
BENCHMARK(listingTick)->Apply(sizes);

} // namespace

int main(int argc, char **argv)
{
    const QCoreApplication application(argc, argv);
    home().becomeHome();
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
}
