#include "ThumbnailLoader.h"

#include "RecordingDecoder.h"
#include "TemporaryHome.h"
#include "TestImages.h"
#include "ThumbnailRequests.h"
#include "files.h"

#include <QSignalSpy>

#include <sys/stat.h>

#include <algorithm>

using namespace std::chrono_literals;
using namespace thumbnails;

/// What a loader gives, keeps and gives back.
class ThumbnailLoaderTest final : public QObject {
    Q_OBJECT

private:
    static int threadsAtFirst;

    TemporaryHome m_home;
    ThumbnailRequests m_requests;

private Q_SLOTS:

    void init() { pool().setMaxThreadCount(1); }

    void cleanup() { m_requests.clear(); }

    void asManyThreadsAsTheMachineRunsAtOnce() { QCOMPARE(threadsAtFirst, QThread::idealThreadCount()); }

    void theSizeIsTwiceTheLargerSide_data()
    {
        QTest::addColumn<qreal>("width");
        QTest::addColumn<qreal>("height");
        QTest::addColumn<int>("expected");
        QTest::newRow("landscape") << 120.0 << 90.0 << 240;
        QTest::newRow("portrait") << 60.0 << 80.0 << 160;
        QTest::newRow("cut to an integer") << 100.9 << 50.0 << 201;
    }

    void theSizeIsTwiceTheLargerSide()
    {
        QFETCH(const qreal, width);
        QFETCH(const qreal, height);
        QTEST(ThumbnailLoader::maximumPixelSize(width, height), "expected");
    }

    void aThumbnailIsDecodedAndKept()
    {
        ThumbnailLoader loader;
        const auto use = loader.use();
        const QString path = m_home.desktop() + QStringLiteral("/shot.png");
        testImages::writeFile(path, testImages::blackPng({400, 300}));
        QVERIFY(loader.cached(path, pixels).isNull());
        m_requests.load(loader, path);
        QVERIFY2(m_requests.done().isEmpty(), "later, not at once");
        QTRY_COMPARE_WITH_TIMEOUT(m_requests.done(), QStringList{path}, patience);
        QCOMPARE(m_requests.images().constFirst().size(), QSize(100, 75));
        QCOMPARE(loader.cached(path, pixels), m_requests.images().constFirst());
        QVERIFY2(loader.cached(path, pixels + 1).isNull(), "another size is another thumbnail");
    }

    void whatIsInMemoryIsNotDecodedAgain()
    {
        RecordingDecoder decoder;
        decoder.letAll();
        ThumbnailLoader loader({.decode = decoder.decoder()});
        const auto use = loader.use();
        m_requests.load(loader, numbered(1));
        QTRY_COMPARE_WITH_TIMEOUT(m_requests.done().size(), 1, patience);
        m_requests.load(loader, numbered(1));
        QCOMPARE(m_requests.done().size(), 1);
        QTRY_COMPARE_WITH_TIMEOUT(m_requests.done().size(), 2, patience);
        QCOMPARE(m_requests.images().at(1), m_requests.images().at(0));
        QCOMPARE(decoder.begun().size(), 1);
    }

    void anotherSizeIsAnotherDecode()
    {
        RecordingDecoder decoder;
        decoder.letAll();
        ThumbnailLoader loader({.decode = decoder.decoder()});
        const auto use = loader.use();
        m_requests.load(loader, numbered(1), ThumbnailPriority::Visible, 160);
        m_requests.load(loader, numbered(1), ThumbnailPriority::Visible, 240);
        QTRY_COMPARE_WITH_TIMEOUT(m_requests.done().size(), 2, patience);
        QCOMPARE(m_requests.images().at(0).width(), 160);
        QCOMPARE(m_requests.images().at(1).width(), 240);
        QCOMPARE(loader.cache().count(), 2);
    }

    void anUnreadableFileIsToldOnceAndNotDecodedAgain()
    {
        RecordingDecoder decoder;
        decoder.letAll();
        ThumbnailLoader loader({.decode = decoder.decoder()});
        const auto use = loader.use();
        m_requests.load(loader, QStringLiteral("/shots/unreadable.png"));
        QTRY_COMPARE_WITH_TIMEOUT(m_requests.done().size(), 1, patience);
        m_requests.load(loader, QStringLiteral("/shots/unreadable.png"));
        QTRY_COMPARE_WITH_TIMEOUT(m_requests.done().size(), 2, patience);
        QVERIFY(m_requests.images().at(0).isNull());
        QVERIFY(m_requests.images().at(1).isNull());
        QCOMPARE(decoder.begun().size(), 1);
    }

    void whatCanNotBeReadDoesNotStopTheOthers()
    {
        pool().setMaxThreadCount(2);
        constexpr int count = 10'000;
        ThumbnailLoader loader;
        const auto use = loader.use();
        const QString readable = m_home.desktop() + QStringLiteral("/readable.png");
        testImages::writeFile(readable, testImages::blackPng({4, 3}));
        for (int index = 0; index < count; ++index) {
            // Of the same file in as many sizes, and of as many that aren't there.
            if (index % 2 == 0) {
                m_requests.load(loader, readable, ThumbnailPriority::Visible, index + 1);
            } else {
                m_requests.load(loader, m_home.desktop() + QStringLiteral("/none %1.png").arg(index));
            }
        }
        m_requests.await(count);
        QCOMPARE(m_requests.done().size(), count);
        QCOMPARE(std::ranges::count_if(m_requests.images(), &QImage::isNull), count / 2);
        QVERIFY(loader.cache().bytes() <= ThumbnailCache::defaultLimit);
    }

    void aHungMountLeavesThreadsToOtherFolders()
    {
        pool().setMaxThreadCount(2);
        RecordingDecoder decoder;
        decoder.letAll();
        ThumbnailLoader loader({.decode = decoder.decoder(), .hangLimit = 20ms});
        const auto use = loader.use();
        for (int index = 0; index < 50; ++index) {
            m_requests.load(loader, QStringLiteral("/hung/%1.png").arg(index));
        }
        for (int index = 0; index < 50; ++index) {
            m_requests.load(loader, numbered(index));
        }
        QTRY_COMPARE_WITH_TIMEOUT(m_requests.done().size(), 50, patience);
        QVERIFY2(
            decoder.begun().filter(QStringLiteral("/hung/")).size() <= 5,
            qPrintable(decoder.begun().join(u' ')));
        decoder.reviveMount();
        QTRY_COMPARE_WITH_TIMEOUT(m_requests.done().size(), 100, patience);
        QCOMPARE(pool().maxThreadCount(), 2);
    }

    void aSlowFileHoldsUpNothingForGood()
    {
        RecordingDecoder decoder;
        decoder.letAll();
        ThumbnailLoader loader({.decode = decoder.decoder(), .hangLimit = 5ms});
        const auto use = loader.use();
        m_requests.load(loader, QStringLiteral("/hung/1.png"));
        m_requests.load(loader, QStringLiteral("/hung/2.png"));
        m_requests.load(loader, QStringLiteral("/hung/3.png"));
        QTRY_VERIFY_WITH_TIMEOUT(decoder.begun().size() >= 2, patience);
        decoder.reviveMount();
        QTRY_COMPARE_WITH_TIMEOUT(m_requests.done().size(), 3, patience);
    }

    void afterTheLastUseNothingIsLeft()
    {
        RecordingDecoder decoder;
        decoder.letAll();
        ThumbnailLoader loader({.decode = decoder.decoder(), .releaseDelay = 1ms});
        auto popover = loader.use();
        auto window = loader.use();
        m_requests.load(loader, numbered(1));
        m_requests.load(loader, QStringLiteral("/shots/unreadable.png"));
        QTRY_COMPARE_WITH_TIMEOUT(m_requests.done().size(), 2, patience);
        popover.reset();
        QCOMPARE(loader.cache().count(), 2);
        window.reset();
        QCOMPARE(loader.cache().count(), 2);
        QTRY_COMPARE_WITH_TIMEOUT(loader.cache().count(), 0, patience);
        QCOMPARE(loader.cache().bytes(), 0);
    }

    void anotherUseInTimeKeepsThem()
    {
        RecordingDecoder decoder;
        decoder.letAll();
        ThumbnailLoader loader({.decode = decoder.decoder(), .releaseDelay = 0ms});
        auto use = loader.use();
        m_requests.load(loader, numbered(1));
        QTRY_COMPARE_WITH_TIMEOUT(m_requests.done().size(), 1, patience);
        use.reset();
        use = loader.use();
        // Behind the timer, had it been left running.
        QTimer later;
        QSignalSpy isLater(&later, &QTimer::timeout);
        later.start(1);
        QVERIFY(isLater.wait());
        QCOMPARE(loader.cache().count(), 1);
    }

    void whatFinishesAfterTheLastUseIsDroppedToo()
    {
        RecordingDecoder decoder;
        ThumbnailLoader loader({.decode = decoder.decoder(), .releaseDelay = 1ms});
        auto use = loader.use();
        m_requests.load(loader, numbered(1));
        QTRY_COMPARE_WITH_TIMEOUT(decoder.begun().size(), 1, patience);
        m_requests.tickets().clear();
        use.reset();
        decoder.letAll();
        pool().waitForDone();
        QCoreApplication::sendPostedEvents();
        QCOMPARE(loader.cache().count(), 1);
        QTRY_COMPARE_WITH_TIMEOUT(loader.cache().count(), 0, patience);
    }

    void atRestThereIsNoThread()
    {
        // Not waited for: the pool ends its idle threads by itself after this time.
        QVERIFY(pool().expiryTimeout() > 0);
        QVERIFY(pool().expiryTimeout() <= 5000);
    }

    void foldersAndPipesAreNoImages()
    {
        ThumbnailLoader loader;
        const auto use = loader.use();
        const QString folder = m_home.desktop() + QStringLiteral("/folder.png");
        files::makeFolder(folder);
        const QString pipe = m_home.desktop() + QStringLiteral("/pipe.png");
        QCOMPARE(::mkfifo(QFile::encodeName(pipe).constData(), 0600), 0);
        m_requests.load(loader, folder);
        m_requests.load(loader, pipe);
        m_requests.load(loader, QString());
        QTRY_COMPARE_WITH_TIMEOUT(m_requests.done().size(), 3, patience);
        QVERIFY(std::ranges::all_of(m_requests.images(), &QImage::isNull));
    }

    void theProgramHasOne() { QCOMPARE(&ThumbnailLoader::shared(), &ThumbnailLoader::shared()); }
};

int ThumbnailLoaderTest::threadsAtFirst = pool().maxThreadCount();

QTEST_GUILESS_MAIN(ThumbnailLoaderTest)
#include "ThumbnailLoaderTest.moc"
