// Moving 1,000 files to the Trash the product's way, waiting for writers included, and as a gallery's
// selection, beside the same loop of bare `g_file_trash`. They take turns, so that a disk that slows down
// slows all of them.

#include "FileAccessManager.h"
#include "FileCoordinator.h"
#include "FileManager.h"
#include "NotificationManager.h"
#include "ScreenshotGalleryViewModel.h"
#include "TemporaryFolder.h"

#include <benchmark/benchmark.h>

#include <QCoreApplication>
#include <QDir>
#include <QFile>

#undef signals
#include <gio/gio.h>

#include <memory>
#include <optional>

namespace {

constexpr int fileCount = 1'000;

const TemporaryFolder &home()
{
    static const TemporaryFolder folder;
    return folder;
}

QStringList makeFiles()
{
    static int round = 0;
    const QString folder = home().makeFilled(QStringLiteral("round-%1").arg(++round), fileCount, 1);
    QStringList paths;
    for (const QString &name : QDir(folder).entryList(QDir::Files)) {
        paths.append(folder + u'/' + name);
    }
    return paths;
}

void emptyTrash()
{
    QDir(home().path() + QStringLiteral("/.local/share/Trash")).removeRecursively();
}

void bareGioTrash(benchmark::State &state)
{
    for (auto _ : state) {
        state.PauseTiming();
        const QStringList paths = makeFiles();
        state.ResumeTiming();
        for (const QString &path : paths) {
            GFile *const file = g_file_new_for_path(path.toUtf8().constData());
            if (g_file_trash(file, nullptr, nullptr) == FALSE) {
                state.SkipWithError("g_file_trash failed");
            }
            g_object_unref(file);
        }
        state.PauseTiming();
        emptyTrash();
        state.ResumeTiming();
    }
}

void coordinatedTrash(benchmark::State &state)
{
    for (auto _ : state) {
        state.PauseTiming();
        const QStringList paths = makeFiles();
        state.ResumeTiming();
        for (const QString &path : paths) {
            const auto moved = FileCoordinator().coordinateWritingForDeleting(
                QUrl::fromLocalFile(path),
                [](const QUrl &url) { return FileManager::defaultManager().trashItem(url); });
            if (!moved) {
                state.SkipWithError("The move failed");
            }
        }
        state.PauseTiming();
        emptyTrash();
        state.ResumeTiming();
    }
}

/// A model that shows all of a thousand new screenshots on the Desktop and has them selected.
std::unique_ptr<ScreenshotGalleryViewModel> makeSelection()
{
    for (int number = 0; number < fileCount; ++number) {
        QFile file(home().path() + QStringLiteral("/Desktop/Screenshot %1.png").arg(number));
        static_cast<void>(file.open(QIODevice::WriteOnly));
    }
    auto model = std::make_unique<ScreenshotGalleryViewModel>(
        std::nullopt, QList<SearchPathDirectory>{SearchPathDirectory::Desktop});
    model->loadScreenshots();
    while (model->isLoading()) {
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
    }
    if (model->displayedScreenshots().size() != fileCount) {
        qFatal("Not all of the screenshots are there");
    }
    QSet<QString> ids;
    for (const ScreenshotItem &item : model->displayedScreenshots()) {
        ids.insert(item.id);
    }
    model->setSelectedIDs(ids);
    return model;
}

void gallerySelectionTrash(benchmark::State &state)
{
    for (auto _ : state) {
        state.PauseTiming();
        const auto model = makeSelection();
        state.ResumeTiming();
        model->deleteSelected();
        while (model->isDeleting()) {
            QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
        }
        state.PauseTiming();
        if (!model->allScreenshots().isEmpty()) {
            state.SkipWithError("Some of the selection is still there");
        }
        emptyTrash();
        state.ResumeTiming();
    }
}

BENCHMARK(bareGioTrash)->Unit(benchmark::kMillisecond)->UseRealTime();
BENCHMARK(coordinatedTrash)->Unit(benchmark::kMillisecond)->UseRealTime();
BENCHMARK(gallerySelectionTrash)->Unit(benchmark::kMillisecond)->UseRealTime();

} // namespace

int main(int argc, char **argv)
{
    const QCoreApplication application(argc, argv);
    home().becomeHome();
    QDir(home().path()).mkdir(QStringLiteral("Desktop"));
    NotificationManager::shared();
    FileAccessManager::shared();
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
}
