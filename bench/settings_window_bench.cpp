// The settings window, as its user waits for it: from the menu's choice to its first frame, beside a bare
// window of the toolkit with as many labels as the settings have texts; by turns, in one run.
//
//   settings_window_bench [TIMES]

#include "FileAccessManager.h"
#include "NotificationManager.h"
#include "Preferences.h"
#include "ScreenshotManager.h"
#include "SettingsApplicationDelegate.h"
#include "SettingsView.h"
#include "TemporaryFolder.h"
#include "processMemory.h"
#include "runInBackground.h"

#include <QAbstractButton>
#include <QApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QLabel>
#include <QVBoxLayout>

#include <algorithm>
#include <cstdio>
#include <functional>
#include <memory>
#include <vector>

namespace {

constexpr int defaultTimes = 21;
constexpr QSize windowSize(640, 480);

class Delegate final : public SettingsApplicationDelegate {
public:
    [[nodiscard]] qint64 timeframeInMinutes() const override
    {
        return preferences::defaultTimeframeInMinutes;
    }

    void updateTimeframe(qint64 /*minutes*/) override {}

    [[nodiscard]] FileAccessManager *fileAccessManager() const override
    {
        return &FileAccessManager::shared();
    }

    [[nodiscard]] ScreenshotManager *screenshotManager() const override { return m_screenshotManager.get(); }

private:
    std::unique_ptr<ScreenshotManager> m_screenshotManager = std::make_unique<ScreenshotManager>();
};

/// Knows when the widget has been painted for the first time.
class FirstFrame final : public QObject {
public:
    explicit FirstFrame(QWidget &widget) { widget.installEventFilter(this); }

    bool isPainted = false;

    bool eventFilter(QObject * /*watched*/, QEvent *event) override
    {
        if (event->type() == QEvent::Paint) {
            // It is on screen once what is queued behind the painting has been done.
            QMetaObject::invokeMethod(this, [this] { isPainted = true; }, Qt::QueuedConnection);
        }
        return false;
    }
};

std::unique_ptr<QWidget> bareWindow(int labels)
{
    auto window = std::make_unique<QWidget>();
    auto *const column = new QVBoxLayout(window.get());
    for (int number = 0; number < labels; ++number) {
        column->addWidget(new QLabel(QStringLiteral("This is label number %1").arg(number)));
    }
    return window;
}

/// On labels and buttons, as far as they are to be seen.
int visibleTexts(const QWidget &window)
{
    int count = 0;
    for (const QLabel *const label : window.findChildren<QLabel *>()) {
        count += label->isHidden() || label->text().isEmpty() ? 0 : 1;
    }
    for (const QAbstractButton *const button : window.findChildren<QAbstractButton *>()) {
        count += button->isHidden() || button->text().isEmpty() ? 0 : 1;
    }
    return count;
}

/// In milliseconds.
double timeToFirstFrame(const std::function<std::unique_ptr<QWidget>()> &make)
{
    QElapsedTimer timer;
    timer.start();
    const std::unique_ptr<QWidget> window = make();
    window->setFixedSize(windowSize);
    const FirstFrame frame(*window);
    window->show();
    while (!frame.isPainted) {
        QCoreApplication::processEvents(QEventLoop::AllEvents | QEventLoop::WaitForMoreEvents, 5);
    }
    const double taken = double(timer.nsecsElapsed()) / 1e6;
    background::pool(BackgroundQueue::Listing).waitForDone();
    return taken;
}

double median(std::vector<double> values)
{
    std::ranges::nth_element(values, values.begin() + std::ssize(values) / 2);
    return values[values.size() / 2];
}

} // namespace

int main(int argc, char **argv)
{
    processMemory::keepLow();
    QApplication application(argc, argv);
    const QStringList arguments = QApplication::arguments();
    const int times = arguments.size() > 1 ? arguments.at(1).toInt() : defaultTimes;
    const TemporaryFolder home;
    home.becomeHome();
    QDir().mkpath(home.path() + QStringLiteral("/Desktop"));
    NotificationManager::shared();
    FileAccessManager::shared();
    Delegate delegate;

    const int labels = visibleTexts(SettingsView(delegate));
    const auto settings = [&] { return std::make_unique<SettingsView>(delegate); };
    const auto bare = [&] { return bareWindow(labels); };
    printf("first of all: settings %.1f ms\n", timeToFirstFrame(settings));
    printf("first of all: bare window %.1f ms\n", timeToFirstFrame(bare));
    std::vector<double> ours;
    std::vector<double> theirs;
    for (int time = 0; time < times; ++time) {
        ours.push_back(timeToFirstFrame(settings));
        theirs.push_back(timeToFirstFrame(bare));
    }
    printf(
        "median of %d: settings %.2f ms, bare window with %d labels %.2f ms, ratio %.2f\n", times,
        median(ours), labels, median(theirs), median(ours) / median(theirs));
    return 0;
}
