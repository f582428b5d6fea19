// `isScreenshot` over 100,000 realistic names, nine in ten not images, beside a loop that only decodes the
// names and tests the suffix.

#include "isScreenshot.h"
#include "names.h"

#include <benchmark/benchmark.h>

#include <vector>

namespace {

constexpr int nameCount = 100'000;

/// Nine names in ten are no images; of the images, half are screenshots.
const std::vector<QByteArray> &names()
{
    static const std::vector<QByteArray> result = [] {
        std::vector<QByteArray> made;
        made.reserve(nameCount);
        for (int i = 0; i < nameCount; ++i) {
            made.push_back(
                (i % 20 == 0 ? screenshotName(i) : otherName(i % 10 == 3 && i % 20 != 3 ? i + 1 : i))
                    .toUtf8());
        }
        return made;
    }();
    return result;
}

void decodeAndTestSuffix(benchmark::State &state)
{
    for (auto _ : state) {
        int images = 0;
        for (const QByteArray &name : names()) {
            const QString decoded = QString::fromUtf8(name);
            images += decoded.endsWith(QLatin1String(".png"), Qt::CaseInsensitive) ? 1 : 0;
        }
        benchmark::DoNotOptimize(images);
    }
}

void decodeAndRecognise(benchmark::State &state)
{
    for (auto _ : state) {
        int screenshots = 0;
        for (const QByteArray &name : names()) {
            screenshots += isScreenshot(QString::fromUtf8(name)) ? 1 : 0;
        }
        benchmark::DoNotOptimize(screenshots);
    }
}

/// As the watcher does it: the extension is tested before anything is decoded.
void gateAndRecognise(benchmark::State &state)
{
    for (auto _ : state) {
        int screenshots = 0;
        for (const QByteArray &name : names()) {
            screenshots += hasScreenshotExtension(name) && isScreenshot(QString::fromUtf8(name)) ? 1 : 0;
        }
        benchmark::DoNotOptimize(screenshots);
    }
}

BENCHMARK(decodeAndTestSuffix)->Unit(benchmark::kMillisecond);
BENCHMARK(decodeAndRecognise)->Unit(benchmark::kMillisecond);
BENCHMARK(gateAndRecognise)->Unit(benchmark::kMillisecond);

} // namespace

BENCHMARK_MAIN();
