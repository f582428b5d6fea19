// The gallery's listing of a folder into records, beside what it can't do without: a `readdir` loop with one
// `statx` for each entry.

#include "FileManager.h"
#include "TemporaryFolder.h"
#include "screenshotListing.h"

#include <benchmark/benchmark.h>

#include <QCoreApplication>
#include <QHash>

#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>

namespace {

const TemporaryFolder &home()
{
    static const TemporaryFolder folder;
    return folder;
}

const QString &folderOfScreenshots(int count)
{
    static QHash<int, QString> folders;
    QString &path = folders[count];
    if (path.isEmpty()) {
        path = home().makeFilled(QString::number(count), count, 1);
    }
    return path;
}

void readdirAndStatx(benchmark::State &state)
{
    const QByteArray path = folderOfScreenshots(static_cast<int>(state.range(0))).toUtf8();
    for (auto _ : state) {
        DIR *const stream = ::opendir(path.constData());
        if (stream == nullptr) {
            state.SkipWithError("The folder can't be opened");
            break;
        }
        qint64 bytes = 0;
        while (const dirent *const entry = ::readdir(stream)) {
            struct statx attributes;
            const int failed = ::statx(
                ::dirfd(stream), static_cast<const char *>(entry->d_name), AT_SYMLINK_NOFOLLOW,
                STATX_BASIC_STATS | STATX_BTIME, &attributes);
            bytes += failed == 0 ? qint64(attributes.stx_size) : 0;
        }
        ::closedir(stream);
        benchmark::DoNotOptimize(bytes);
    }
}

void listingIntoRecords(benchmark::State &state)
{
    const int count = static_cast<int>(state.range(0));
    const QUrl folder = QUrl::fromLocalFile(folderOfScreenshots(count));
    for (auto _ : state) {
        const auto items = screenshotListing::scanDirectory(FileManager::defaultManager(), folder);
        if (items.size() != count) {
            state.SkipWithError("Every file should be a record");
        }
    }
}

void sizes(benchmark::internal::Benchmark *benchmark)
{
    benchmark->Arg(1'000)->Arg(10'000)->ArgName("files")->Unit(benchmark::kMicrosecond);
}

BENCHMARK(readdirAndStatx)->Apply(sizes);
BENCHMARK(listingIntoRecords)->Apply(sizes);

} // namespace

int main(int argc, char **argv)
{
    const QCoreApplication application(argc, argv);
    home().becomeHome();
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
}
