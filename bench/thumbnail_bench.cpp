// A thumbnail of 240 pixels of a screenshot: the product's, beside the toolkit's full decoding with smooth
// scaling, libpng's rows under the same averaging, and, where it is installed, libvips' thumbnail. Times are
// of the whole process's processors: libvips uses several. The counter `psnr` is how near each comes to the
// exact mean of every pixel's area, in decibel.

#include "AreaAverage.h"
#include "FileDescriptor.h"
#include "LibpngRows.h"
#include "TemporaryFolder.h"
#include "pngThumbnail.h"
#include "screenshots.h"
#include "thumbnailSize.h"

#include <benchmark/benchmark.h>

#include <QFile>
#include <QImageReader>

#include <fcntl.h>

#include <array>
#include <cmath>
#include <cstdlib>
#include <map>

#ifdef DESKBROOM_BENCH_VIPS
#    include <vips/vips.h>
#endif

namespace {

using screenshots::Kind;

constexpr int thumbnailSide = 240;

struct Sample {
    const char *name;
    Kind kind;
    QSize size;
    bool hasAlpha = false;
};

const std::array samples = {
    Sample{"text_1920", Kind::Text, {1920, 1080}},   Sample{"mixed_1920", Kind::Mixed, {1920, 1080}},
    Sample{"photo_1920", Kind::Photo, {1920, 1080}}, Sample{"text_2560", Kind::Text, {2560, 1600}},
    Sample{"mixed_2560", Kind::Mixed, {2560, 1600}}, Sample{"photo_2560", Kind::Photo, {2560, 1600}},
    Sample{"text_5120", Kind::Text, {5120, 2880}},   Sample{"mixed_5120", Kind::Mixed, {5120, 2880}},
    Sample{"photo_5120", Kind::Photo, {5120, 2880}}, Sample{"rgba_2560", Kind::Mixed, {2560, 1600}, true},
};

QImage picture(const Sample &sample)
{
    const QImage image = screenshots::make(sample.kind, sample.size);
    return sample.hasAlpha ? image.convertToFormat(QImage::Format_ARGB32) : image;
}

const QString &file(const Sample &sample)
{
    static const TemporaryFolder folder;
    static std::map<const Sample *, QString> paths;
    QString &path = paths[&sample];
    if (path.isEmpty()) {
        path = folder.path() + QLatin1Char('/') + QLatin1String(sample.name) + QStringLiteral(".png");
        QFile written(path);
        const QByteArray bytes = screenshots::encoded(picture(sample));
        if (!written.open(QIODevice::WriteOnly) || written.write(bytes) != bytes.size()) {
            std::abort();
        }
    }
    return path;
}

FileDescriptor opened(const QString &path)
{
    return FileDescriptor(::open(QFile::encodeName(path).constData(), O_RDONLY | O_CLOEXEC));
}

QImage ours(const QString &path)
{
    return pngThumbnail(opened(path).get(), thumbnailSide).value_or(QImage());
}

QImage libpngRows(const QString &path)
{
    const FileDescriptor descriptor = opened(path);
    LibpngRows rows(descriptor.get());
    if (!rows.readHeader()) {
        return {};
    }
    AreaAverage average(rows.size(), thumbnailSize(rows.size(), thumbnailSide), rows.channels());
    for (int y = 0; y < rows.size().height(); ++y) {
        const uchar *const row = rows.readRow();
        if (row == nullptr) {
            return {};
        }
        average.addRow(row);
    }
    return rows.readEnd() ? average.image() : QImage();
}

QImage toolkit(const QString &path)
{
    QImageReader reader(path, "png");
    const QImage image = reader.read();
    return image.scaled(
        thumbnailSize(image.size(), thumbnailSide), Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
}

#ifdef DESKBROOM_BENCH_VIPS
QImage vips(const QString &path)
{
    VipsImage *thumbnail = nullptr;
    if (vips_thumbnail(
            QFile::encodeName(path).constData(), &thumbnail, thumbnailSide, "height", thumbnailSide,
            nullptr) != 0) {
        return {};
    }
    size_t size = 0;
    void *const pixels = vips_image_write_to_memory(thumbnail, &size);
    const int bands = vips_image_get_bands(thumbnail);
    const QImage image(
        static_cast<const uchar *>(pixels), vips_image_get_width(thumbnail), vips_image_get_height(thumbnail),
        qsizetype(vips_image_get_width(thumbnail)) * bands,
        bands == 4 ? QImage::Format_RGBA8888 : QImage::Format_RGB888);
    const QImage copy = image.copy();
    g_free(pixels);
    g_object_unref(thumbnail);
    return copy;
}
#endif

/// The mean over the area of each pixel of `size`, in floating point and in the plainest way.
std::vector<double> exactMeans(const QImage &image, QSize size)
{
    std::vector<double> means;
    for (int row = 0; row < size.height(); ++row) {
        const double top = double(row) * image.height() / size.height();
        const double bottom = double(row + 1) * image.height() / size.height();
        for (int column = 0; column < size.width(); ++column) {
            const double left = double(column) * image.width() / size.width();
            const double right = double(column + 1) * image.width() / size.width();
            std::array<double, 3> sums = {};
            for (int y = int(top); y < std::ceil(bottom) && y < image.height(); ++y) {
                const double height = std::min(bottom, y + 1.0) - std::max(top, double(y));
                for (int x = int(left); x < std::ceil(right) && x < image.width(); ++x) {
                    const double width = std::min(right, x + 1.0) - std::max(left, double(x));
                    const QRgb pixel = image.pixel(x, y);
                    sums[0] += width * height * qRed(pixel);
                    sums[1] += width * height * qGreen(pixel);
                    sums[2] += width * height * qBlue(pixel);
                }
            }
            const double area = (bottom - top) * (right - left);
            for (const double sum : sums) {
                means.push_back(sum / area);
            }
        }
    }
    return means;
}

double psnr(const QImage &thumbnail, const std::vector<double> &means)
{
    double squares = 0;
    auto mean = means.begin();
    for (int y = 0; y < thumbnail.height(); ++y) {
        for (int x = 0; x < thumbnail.width(); ++x) {
            const QRgb pixel = thumbnail.pixel(x, y);
            for (const int value : {qRed(pixel), qGreen(pixel), qBlue(pixel)}) {
                squares += std::pow(value - *mean++, 2);
            }
        }
    }
    return 10 * std::log10(255.0 * 255.0 * double(means.size()) / squares);
}

const std::vector<double> &exactMeans(const Sample &sample)
{
    static std::map<const Sample *, std::vector<double>> known;
    auto &means = known[&sample];
    if (means.empty()) {
        means = exactMeans(picture(sample), thumbnailSize(sample.size, thumbnailSide));
    }
    return means;
}

void measure(benchmark::State &state, QImage (*make)(const QString &), const Sample &sample)
{
    const QString &path = file(sample);
    QImage thumbnail;
    for (auto _ : state) {
        thumbnail = make(path);
        if (thumbnail.isNull()) {
            state.SkipWithError("There is no thumbnail");
            break;
        }
    }
    if (thumbnail.size() == thumbnailSize(sample.size, thumbnailSide)) {
        state.counters["psnr"] = psnr(thumbnail, exactMeans(sample));
    }
}

void add(const std::string &name, QImage (*make)(const QString &))
{
    for (const Sample &sample : samples) {
        benchmark::RegisterBenchmark(
            (name + '/' + sample.name).c_str(),
            [make, &sample](benchmark::State &state) { measure(state, make, sample); })
            ->MeasureProcessCPUTime()
            ->Unit(benchmark::kMillisecond);
    }
}

} // namespace

int main(int argc, char **argv)
{
    add("ours", &ours);
    add("libpng_rows", &libpngRows);
    add("toolkit", &toolkit);
#ifdef DESKBROOM_BENCH_VIPS
    if (VIPS_INIT(argv[0]) != 0) {
        return EXIT_FAILURE;
    }
    vips_cache_set_max(0); // each is made anew
    add("vips", &vips);
#endif
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
}
