// The gallery's thumbnails, 240 pixels each, of 30 screenshots of 2560 × 1600: through the loader with one
// thread and with two, decoded alone, decoded with an entry left for other programs, and out of such entries.
// Beside it one JPEG, ours and, where its library is installed, gdk-pixbuf's. Files are in the page cache.

#include "ImageSource.h"
#include "TemporaryFolder.h"
#include "ThumbnailLoader.h"
#include "runInBackground.h"
#include "screenshots.h"

#include <benchmark/benchmark.h>

#include <QBuffer>
#include <QCoreApplication>
#include <QDir>
#include <QEventLoop>
#include <QFile>
#include <QLibrary>
#include <QUrl>

#include <fcntl.h>
#include <sys/stat.h>

#include <array>
#include <cstdlib>
#include <ctime>

namespace {

using screenshots::Kind;

constexpr int thumbnailSide = 240;
constexpr int screenshotCount = 30;
constexpr QSize screenshotSize(2560, 1600);

void write(const QString &path, const QByteArray &bytes)
{
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly) || file.write(bytes) != bytes.size()) {
        std::abort();
    }
    file.close();
    // A file that is new has no entry.
    const timespec old = {.tv_sec = std::time(nullptr) - 100, .tv_nsec = 0};
    const std::array times = {old, old};
    ::utimensat(AT_FDCWD, QFile::encodeName(path).constData(), times.data(), 0);
}

/// A home with the screenshots, a third of each kind.
class Home {
public:
    Home()
    {
        m_folder.becomeHome();
        qputenv("XDG_CACHE_HOME", QFile::encodeName(cache()));
        std::array<QByteArray, 3> files;
        for (const Kind kind : {Kind::Text, Kind::Mixed, Kind::Photo}) {
            files[size_t(kind)] = screenshots::encoded(screenshots::make(kind, screenshotSize));
        }
        for (int number = 0; number < screenshotCount; ++number) {
            m_paths.append(m_folder.path() + QStringLiteral("/Screenshot %1.png").arg(number));
            write(m_paths.constLast(), files[size_t(number) % files.size()]);
        }
    }

    [[nodiscard]] const QStringList &paths() const { return m_paths; }

    [[nodiscard]] QString path() const { return m_folder.path(); }

    [[nodiscard]] QString cache() const { return m_folder.path() + QStringLiteral("/.cache"); }

    void clearCache() const { QDir(cache()).removeRecursively(); }

private:
    TemporaryFolder m_folder;
    QStringList m_paths;
};

const Home &home()
{
    static const Home instance;
    return instance;
}

DecodedThumbnail decodeAlone(const QString &path, int maximumPixelSize)
{
    const auto source = ImageSource::create(QUrl::fromLocalFile(path));
    return {
        .image = source ? source->thumbnail(maximumPixelSize).value_or(QImage()) : QImage(), .fileState = {}};
}

/// False if one of them has no thumbnail.
bool loadAll(const ThumbnailDecoder &decoder)
{
    ThumbnailLoader loader({.decode = decoder});
    const auto use = loader.use();
    std::vector<std::unique_ptr<ThumbnailTicket>> tickets;
    QEventLoop loop;
    int done = 0;
    bool succeeds = true;
    for (const QString &path : home().paths()) {
        tickets.push_back(
            loader.load(path, thumbnailSide, ThumbnailPriority::Visible, [&](const QImage &image) {
                succeeds &= !image.isNull();
                if (++done == screenshotCount) {
                    loop.quit();
                }
            }));
    }
    loop.exec();
    return succeeds;
}

enum class Entries { LeftOut, Written, Read };

void measureGallery(benchmark::State &state, Entries entries, int threads)
{
    background::pool(BackgroundQueue::Thumbnails).setMaxThreadCount(threads);
    const ThumbnailDecoder decoder = entries == Entries::LeftOut ? &decodeAlone : &decodeThumbnail;
    home().clearCache();
    if (entries == Entries::Read) {
        loadAll(decoder);
    }
    for (auto _ : state) {
        if (!loadAll(decoder)) {
            state.SkipWithError("There is no thumbnail");
            break;
        }
        if (entries == Entries::Written) {
            state.PauseTiming();
            home().clearCache();
            state.ResumeTiming();
        }
    }
}

const QString &jpegFile()
{
    static const QString path = [] {
        const QString name = home().path() + QStringLiteral("/photo.jpeg");
        QBuffer buffer;
        screenshots::make(Kind::Photo, screenshotSize).save(&buffer, "jpeg");
        write(name, buffer.data());
        return name;
    }();
    return path;
}

void measureOurJpeg(benchmark::State &state)
{
    const QString &path = jpegFile();
    for (auto _ : state) {
        if (decodeAlone(path, thumbnailSide).image.isNull()) {
            state.SkipWithError("There is no thumbnail");
            break;
        }
    }
}

/// Without its headers, which few have installed; the library many.
class GdkPixbuf {
public:
    GdkPixbuf()
        : m_pixbuf(QStringLiteral("gdk_pixbuf-2.0"), 0),
          m_object(QStringLiteral("gobject-2.0"), 0),
          m_atScale(reinterpret_cast<AtScale>(m_pixbuf.resolve("gdk_pixbuf_new_from_file_at_scale"))),
          m_unref(reinterpret_cast<Unref>(m_object.resolve("g_object_unref")))
    {
    }

    [[nodiscard]] bool isInstalled() const { return m_atScale != nullptr && m_unref != nullptr; }

    [[nodiscard]] bool makeThumbnail(const QString &path) const
    {
        constexpr int preserveAspectRatio = 1;
        void *const pixbuf = m_atScale(
            QFile::encodeName(path).constData(), thumbnailSide, thumbnailSide, preserveAspectRatio, nullptr);
        if (pixbuf != nullptr) {
            m_unref(pixbuf);
        }
        return pixbuf != nullptr;
    }

private:
    using AtScale = void *(*)(const char *path, int width, int height, int preservesAspect, void **error);
    using Unref = void (*)(void *object);

    QLibrary m_pixbuf;
    QLibrary m_object;
    AtScale m_atScale;
    Unref m_unref;
};

void add(const std::string &name, std::function<void(benchmark::State &)> measure)
{
    benchmark::RegisterBenchmark(name.c_str(), std::move(measure))
        ->MeasureProcessCPUTime()
        ->UseRealTime()
        ->Unit(benchmark::kMillisecond);
}

} // namespace

int main(int argc, char **argv)
{
    const QCoreApplication application(argc, argv);
    const std::array ways = {
        std::pair("decoded", Entries::LeftOut),
        std::pair("decoded_and_shared", Entries::Written),
        std::pair("out_of_the_shared_cache", Entries::Read),
    };
    for (const auto &[name, entries] : ways) {
        for (const int threads : {1, 2}) {
            add(std::string(name) + "/threads:" + std::to_string(threads),
                [entries = entries, threads](benchmark::State &state) {
                    measureGallery(state, entries, threads);
                });
        }
    }
    add("jpeg/ours", &measureOurJpeg);
    static const GdkPixbuf gdkPixbuf;
    if (gdkPixbuf.isInstalled()) {
        add("jpeg/gdk_pixbuf", [](benchmark::State &state) {
            const QString &path = jpegFile();
            for (auto _ : state) {
                if (!gdkPixbuf.makeThumbnail(path)) {
                    state.SkipWithError("There is no thumbnail");
                    break;
                }
            }
        });
    }
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    finishBackgroundWork();
}
