#include "runInBackground.h"

#include <QSemaphore>
#include <QTest>
#include <QThread>

#include <atomic>
#include <memory>
#include <optional>

class runInBackgroundTest : public QObject {
    Q_OBJECT

private Q_SLOTS:

    void theResultComesToTheMainThread()
    {
        QThread *workThread = nullptr;
        QThread *doneThread = nullptr;
        QString result;
        runInBackground(
            this,
            [&workThread] {
                workThread = QThread::currentThread();
                return QStringLiteral("value");
            },
            [&](const QString &value) {
                doneThread = QThread::currentThread();
                result = value;
            });
        QTRY_COMPARE(result, QStringLiteral("value"));
        QVERIFY(workThread != thread());
        QCOMPARE(doneThread, thread());
    }

    void aResultMayBeMoveOnly()
    {
        int result = 0;
        runInBackground(
            this, [] { return std::make_unique<int>(7); },
            [&result](std::unique_ptr<int> value) { result = *value; });
        QTRY_COMPARE(result, 7);
    }

    void anOwnerThatIsGoneGetsNothing()
    {
        QSemaphore mayFinish;
        bool isDelivered = false;
        auto owner = std::make_unique<QObject>();
        runInBackground(
            owner.get(),
            [&mayFinish] {
                mayFinish.acquire();
                return 1;
            },
            [&isDelivered](int) { isDelivered = true; });
        owner.reset();
        mayFinish.release();
        // Queued behind what the first work has queued when both are over.
        background::pool(BackgroundQueue::Default).waitForDone();
        bool isNextDelivered = false;
        runInBackground(this, [] { return 2; }, [&isNextDelivered](int) { isNextDelivered = true; });
        QTRY_VERIFY(isNextDelivered);
        QVERIFY(!isDelivered);
    }

    void anOwnerThatGoesWhileTheResultIsQueuedGetsNothing()
    {
        bool isDelivered = false;
        auto owner = std::make_unique<QObject>();
        runInBackground(owner.get(), [] { return 1; }, [&isDelivered](int) { isDelivered = true; });
        background::pool(BackgroundQueue::Default).waitForDone();
        owner.reset();
        QCoreApplication::sendPostedEvents();
        QVERIFY(!isDelivered);
    }

    void nothingToTellWakesNobody()
    {
        bool isDelivered = false;
        QList<int> values;
        runInBackgroundIfAny(
            this, BackgroundQueue::Default, [] { return std::optional<int>(); },
            [&isDelivered](int) { isDelivered = true; });
        runInBackgroundIfAny(
            this, BackgroundQueue::Default, [] { return std::optional(5); },
            [&values](int value) { values += value; });
        QTRY_COMPARE(values, QList<int>{5});
        background::pool(BackgroundQueue::Default).waitForDone();
        QCoreApplication::sendPostedEvents();
        QVERIFY(!isDelivered);
    }

    void aScanThatHangsDelaysNoDeletion()
    {
        QSemaphore mayFinish;
        for (int scan = 0; scan < 10; ++scan) {
            runInBackground(
                this, BackgroundQueue::Scan,
                [&mayFinish] {
                    mayFinish.acquire();
                    return true;
                },
                [](bool) {});
        }
        bool isDeleted = false;
        bool isShown = false;
        const auto succeed = [] { return true; };
        runInBackground(this, BackgroundQueue::Default, succeed, [&isDeleted](bool) { isDeleted = true; });
        runInBackground(this, BackgroundQueue::UserInitiated, succeed, [&isShown](bool) { isShown = true; });
        QTRY_VERIFY(isDeleted);
        QTRY_VERIFY(isShown);
        mayFinish.release(10);
        background::pool(BackgroundQueue::Scan).waitForDone();
    }

    void theEndWaitsForDeletionsAndDropsListings()
    {
        QSemaphore mayFinish;
        std::atomic<int> deletions = 0;
        std::atomic<int> scans = 0;
        for (int index = 0; index < 5; ++index) {
            runInBackground(this, BackgroundQueue::Default, [&deletions] { return ++deletions; }, [](int) {});
        }
        background::pool(BackgroundQueue::Scan).setMaxThreadCount(1);
        runInBackground(
            this, BackgroundQueue::Scan,
            [&mayFinish, &scans] {
                mayFinish.acquire();
                return ++scans;
            },
            [](int) {});
        for (int index = 0; index < 5; ++index) {
            runInBackground(this, BackgroundQueue::Scan, [&scans] { return ++scans; }, [](int) {});
        }
        // Released by another thread: this one is about to wait.
        const std::unique_ptr<QThread> releaser(QThread::create([&deletions, &mayFinish] {
            while (deletions < 5) {
                QThread::yieldCurrentThread();
            }
            mayFinish.release();
        }));
        releaser->start();
        finishBackgroundWork();
        releaser->wait();
        QCOMPARE(deletions.load(), 5);
        QVERIFY(scans.load() <= 1);
    }
};

QTEST_GUILESS_MAIN(runInBackgroundTest)
#include "runInBackgroundTest.moc"
