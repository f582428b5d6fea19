#include "DelayedWork.h"

#include <QElapsedTimer>
#include <QTest>

#include <limits>
#include <memory>

using namespace std::chrono_literals;

class DelayedWorkTest : public QObject {
    Q_OBJECT

private Q_SLOTS:

    void zeroAndBelowRunOnTheNextTurn_data()
    {
        QTest::addColumn<qint64>("seconds");
        QTest::newRow("zero") << qint64(0);
        QTest::newRow("below") << qint64(-5);
        QTest::newRow("far below") << std::numeric_limits<qint64>::min();
    }

    void zeroAndBelowRunOnTheNextTurn()
    {
        QFETCH(const qint64, seconds);
        int runs = 0;
        const DelayedWork work(std::chrono::seconds(seconds), [&runs] { ++runs; });
        QCOMPARE(runs, 0);
        QVERIFY(work.isPending());
        QCoreApplication::processEvents();
        QCOMPARE(runs, 1);
        QVERIFY(!work.isPending());
    }

    void theActionRunsOnceAfterItsDelay()
    {
        int runs = 0;
        QElapsedTimer clock;
        clock.start();
        const DelayedWork work(1s, [&runs] { ++runs; });
        QTRY_COMPARE(runs, 1);
        QVERIFY(clock.elapsed() >= 999);
    }

    void aLongDelayIsAChain()
    {
        int runs = 0;
        QElapsedTimer clock;
        clock.start();
        const DelayedWork work(2s, [&runs] { ++runs; }, 1s);
        QTRY_COMPARE(runs, 1);
        QVERIFY2(clock.elapsed() >= 1990, "both stretches of a second");
    }

    void beyondTheToolkitsTwentyFourDaysNothingRunsEarly_data()
    {
        QTest::addColumn<std::chrono::seconds>("delay");
        QTest::newRow("25 days") << std::chrono::seconds(25 * 24h);
        QTest::newRow("2^32 milliseconds") << std::chrono::seconds(4294968);
        QTest::newRow("longest") << std::chrono::seconds::max();
    }

    void beyondTheToolkitsTwentyFourDaysNothingRunsEarly()
    {
        QFETCH(const std::chrono::seconds, delay);
        bool hasRun = false;
        const DelayedWork longWork(delay, [&hasRun] { hasRun = true; });
        bool shortHasRun = false;
        const DelayedWork shortWork(0s, [&shortHasRun] { shortHasRun = true; });
        QTRY_VERIFY(shortHasRun);
        QVERIFY(!hasRun);
        QVERIFY(longWork.isPending());
    }

    void theLongestStretchFitsATimer()
    {
        constexpr auto longest = std::chrono::milliseconds(DelayedWork::longestStretch);
        QVERIFY(longest.count() <= std::numeric_limits<int>::max());
    }

    void cancelledWorkNeverRuns()
    {
        int runs = 0;
        DelayedWork cancelled(0s, [&runs] { runs += 10; });
        auto destroyed = std::make_unique<DelayedWork>(0s, [&runs] { runs += 100; });
        const DelayedWork later(0s, [&runs] { ++runs; });
        cancelled.cancel();
        QVERIFY(!cancelled.isPending());
        destroyed.reset();
        QTRY_COMPARE(runs, 1);
    }

    void theActionMayDestroyItsWork()
    {
        bool hasRun = false;
        std::unique_ptr<DelayedWork> work;
        work = std::make_unique<DelayedWork>(0s, [&work, &hasRun] {
            work.reset();
            hasRun = true;
        });
        QTRY_VERIFY(hasRun);
        QVERIFY(!work);
    }
};

QTEST_GUILESS_MAIN(DelayedWorkTest)
#include "DelayedWorkTest.moc"
