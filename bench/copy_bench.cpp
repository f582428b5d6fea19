// Copying a screenshot of 5120 x 2880 and about 10 MB from the gallery: the processor time is the main
// thread's own, the real time is how long it takes until the image is on the clipboard. After each copy it is
// checked that the bytes of the file lie there.

#include "FileAccessManager.h"
#include "NotificationManager.h"
#include "ScreenshotGalleryViewModel.h"
#include "TemporaryFolder.h"
#include "screenshots.h"

#include <benchmark/benchmark.h>

#include <QClipboard>
#include <QDir>
#include <QFile>
#include <QGuiApplication>
#include <QMimeData>

#include <algorithm>
#include <memory>

namespace {

constexpr QSize size(5120, 2880);
constexpr double fileSize = 10e6;

/// Text, and above it a photograph as high as the file size takes.
QByteArray makeFile()
{
    const QImage text = screenshots::make(screenshots::Kind::Text, size);
    const QImage photo = screenshots::make(screenshots::Kind::Photo, size);
    const auto textSize = double(screenshots::encoded(text).size());
    const auto photoSize = double(screenshots::encoded(photo).size());
    const double share = std::clamp((fileSize - textSize) / (photoSize - textSize), 0.0, 1.0);
    const int photoHeight = qRound(share * size.height());
    QImage image = text;
    for (int row = 0; row < photoHeight; ++row) {
        std::copy_n(photo.constScanLine(row), photo.bytesPerLine(), image.scanLine(row));
    }
    return screenshots::encoded(image);
}

std::unique_ptr<ScreenshotGalleryViewModel> makeModel()
{
    auto model = std::make_unique<ScreenshotGalleryViewModel>(
        std::nullopt, QList<SearchPathDirectory>{SearchPathDirectory::Desktop});
    model->loadScreenshots();
    while (model->isLoading()) {
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
    }
    if (model->displayedScreenshots().size() != 1) {
        qFatal("The screenshot isn't there");
    }
    return model;
}

void copyToClipboard(benchmark::State &state, const QByteArray &contents)
{
    const auto model = makeModel();
    const ScreenshotItem item = model->displayedScreenshots().constFirst();
    const QClipboard &clipboard = *QGuiApplication::clipboard();
    for (auto _ : state) {
        model->copyToClipboard(item);
        while (!model->copyConfirmationMessage()) {
            QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
        }
        state.PauseTiming();
        if (clipboard.mimeData()->data(QStringLiteral("image/png")) != contents) {
            state.SkipWithError("The clipboard has other bytes");
        }
        model->setCopyConfirmationMessage(std::nullopt);
        state.ResumeTiming();
    }
    state.counters["bytes"] = double(contents.size());
}

} // namespace

int main(int argc, char **argv)
{
    const QGuiApplication application(argc, argv);
    const TemporaryFolder home;
    home.becomeHome();
    const QString desktop = home.path() + QStringLiteral("/Desktop");
    QDir().mkpath(desktop);
    const QByteArray contents = makeFile();
    QFile file(desktop + QStringLiteral("/Screenshot 1.png"));
    if (!file.open(QIODevice::WriteOnly) || file.write(contents) != contents.size()) {
        qFatal("The screenshot can't be written");
    }
    file.close();
    NotificationManager::shared();
    FileAccessManager::shared();
    benchmark::RegisterBenchmark("copyToClipboard", copyToClipboard, contents)->Unit(benchmark::kMillisecond);
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
}
