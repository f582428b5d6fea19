// The gallery's window over many screenshots, as its user waits for it: how long after the listing its first
// frame is painted, how long the main thread is away at a stretch while thumbnails arrive and while it is
// scrolled, and what all of it takes in memory.
//
//   gallery_window_bench [COUNT]

#include "FileAccessManager.h"
#include "GalleryConfiguration.h"
#include "GalleryGrid.h"
#include "NotificationManager.h"
#include "ScreenshotGalleryView.h"
#include "ScreenshotGalleryViewModel.h"
#include "ScrollArea.h"
#include "TemporaryFolder.h"
#include "processMemory.h"
#include "runInBackground.h"
#include "screenshots.h"

#include <QApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QRegularExpression>
#include <QScrollBar>
#include <QThread>
#include <QTimer>

#include <atomic>
#include <cstdio>
#include <functional>
#include <memory>

namespace {

constexpr int defaultCount = 10'000;
/// What the files differ in is their names: the same few pictures, linked.
constexpr int differentPictures = 8;

double milliseconds(const QElapsedTimer &timer)
{
    return double(timer.nsecsElapsed()) / 1e6;
}

/// Asks the main thread again and again whether it is there, and keeps the longest that it took to answer.
class StallMeter final : public QThread {
public:
    StallMeter() { start(); }

    ~StallMeter() override
    {
        m_isEnding = true;
        wait();
    }
    Q_DISABLE_COPY_MOVE(StallMeter)

    /// In milliseconds, since it was asked last.
    double takeLongest() { return double(m_longestNs.exchange(0)) / 1e6; }

protected:
    void run() override
    {
        while (!m_isEnding) {
            QElapsedTimer timer;
            timer.start();
            QMetaObject::invokeMethod(qApp, [this, timer] {
                const qint64 taken = timer.nsecsElapsed();
                m_longestNs = std::max(m_longestNs.load(), taken);
            });
            QThread::msleep(2);
        }
    }

private:
    std::atomic<bool> m_isEnding = false;
    std::atomic<qint64> m_longestNs = 0;
};

/// Calls back after the first painting of the watched widget that comes after `arm`.
class FirstFrame final : public QObject {
public:
    explicit FirstFrame(QWidget &widget) { widget.installEventFilter(this); }

    bool isPainted = false;

    bool eventFilter(QObject *, QEvent *event) override
    {
        if (event->type() == QEvent::Paint) {
            // It is on screen once the events behind it have been handled.
            QTimer::singleShot(0, this, [this] { isPainted = true; });
        }
        return false;
    }
};

void waitUntil(const std::function<bool()> &condition)
{
    while (!condition()) {
        QCoreApplication::processEvents(QEventLoop::AllEvents | QEventLoop::WaitForMoreEvents, 5);
    }
}

void waitFor(int duration)
{
    QElapsedTimer timer;
    timer.start();
    waitUntil([&timer, duration] { return timer.elapsed() > duration; });
}

double pssMebibytes()
{
    QFile rollup(QStringLiteral("/proc/self/smaps_rollup"));
    if (!rollup.open(QIODevice::ReadOnly)) {
        return 0;
    }
    static const QRegularExpression line(
        QStringLiteral("^Pss: +(\\d+) kB"), QRegularExpression::MultilineOption);
    return line.match(QString::fromLatin1(rollup.readAll())).captured(1).toDouble() / 1024;
}

void makeScreenshots(const QString &folder, int count)
{
    QDir().mkpath(folder);
    const QString originals = folder + QStringLiteral("/../originals");
    QDir().mkpath(originals);
    for (int number = 0; number < differentPictures; ++number) {
        const auto kind = static_cast<screenshots::Kind>(number % 3);
        QFile file(originals + QStringLiteral("/%1.png").arg(number));
        if (file.open(QIODevice::WriteOnly)) {
            file.write(screenshots::encoded(screenshots::make(kind, {1920, 1080})));
        }
    }
    for (int number = 0; number < count; ++number) {
        const QByteArray from =
            QFile::encodeName(originals + QStringLiteral("/%1.png").arg(number % differentPictures));
        const QByteArray to = QFile::encodeName(folder + QStringLiteral("/Screenshot %1.png").arg(number));
        if (::link(from.constData(), to.constData()) != 0) {
            qFatal("The screenshots can't be made");
        }
    }
}

void open(StallMeter &stalls)
{
    QElapsedTimer sinceOpening;
    sinceOpening.start();
    auto view = std::make_unique<ScreenshotGalleryView>(GalleryConfiguration{
        .mode = GalleryMode::Expanded,
        .batchSize = GalleryConfiguration::window().batchSize,
        .fallbackPaths = GalleryConfiguration::window().fallbackPaths,
    });
    view->resize(1200, 900);
    view->show();
    waitUntil([&view] { return !view->viewModel().isLoading(); });
    const double listed = milliseconds(sinceOpening);
    QElapsedTimer sinceListing;
    sinceListing.start();
    const FirstFrame frame(view->grid());
    waitUntil([&frame] { return frame.isPainted; });
    printf("listing %.1f ms, first frame %.1f ms after it\n", listed, milliseconds(sinceListing));
    printf("longest stall until then: %.1f ms\n", stalls.takeLongest());

    waitFor(3000);
    printf("longest stall while thumbnails arrive: %.1f ms\n", stalls.takeLongest());
}

void showAllAndScroll(StallMeter &stalls)
{
    auto view = std::make_unique<ScreenshotGalleryView>(GalleryConfiguration{
        .mode = GalleryMode::Expanded,
        .batchSize = std::nullopt,
        .fallbackPaths = GalleryConfiguration::window().fallbackPaths,
    });
    view->resize(1200, 900);
    view->show();
    waitUntil([&view] { return !view->viewModel().isLoading(); });
    waitFor(1500);
    printf("opened with all shown: longest stall %.1f ms\n", stalls.takeLongest());

    QScrollBar *const bar = view->findChild<ScrollArea *>()->verticalScrollBar();
    for (int step = 1; step <= 200; ++step) {
        bar->setValue(int(qint64(bar->maximum()) * step / 200));
        waitFor(10);
    }
    printf("scrolled through in 200 jumps: longest stall %.1f ms\n", stalls.takeLongest());
    for (int step = 0; step < 300; ++step) {
        bar->setValue(bar->value() - 30);
        waitFor(8);
    }
    printf("scrolled slowly: longest stall %.1f ms\n", stalls.takeLongest());
    for (const GalleryGridSize size : galleryGrid::allSizes) {
        view->setGridSize(size);
        waitFor(500);
    }
    printf("changed the grid's size: longest stall %.1f ms\n", stalls.takeLongest());
    waitFor(2000);
    printf("PSS with all shown: %.1f MiB\n", pssMebibytes());
}

} // namespace

int main(int argc, char **argv)
{
    processMemory::keepLow();
    QApplication application(argc, argv);
    const QStringList arguments = QApplication::arguments();
    const int count = arguments.size() > 1 ? arguments.at(1).toInt() : defaultCount;
    const TemporaryFolder home;
    home.becomeHome();
    makeScreenshots(home.path() + QStringLiteral("/Desktop"), count);
    NotificationManager::shared();
    FileAccessManager::shared();

    printf("%d screenshots of 1920 x 1080\nPSS before: %.1f MiB\n", count, pssMebibytes());
    StallMeter stalls;
    open(stalls);
    showAllAndScroll(stalls);
    waitFor(8000);
    printf("PSS some seconds after closing: %.1f MiB\n", pssMebibytes());
    background::pool(BackgroundQueue::Listing).waitForDone();
    return 0;
}
