#include "ThumbnailLoader.h"

#include "TemporaryHome.h"
#include "TestImages.h"
#include "files.h"
#include "runInBackground.h"

#include <QDir>
#include <QMutex>
#include <QSemaphore>
#include <QSignalSpy>
#include <QTest>
#include <QTestEventLoop>

#include <sys/stat.h>

#include <atomic>
#include <memory>
#include <vector>

using namespace std::chrono_literals;

namespace {

using Priority = ThumbnailLoader::Priority;

constexpr int patience = 30'000; // milliseconds
constexpr int pixels = 100;

/// Decodes nothing: writes down what it is asked for, and answers an image of the asked size when it is let.
class RecordingDecoder {
public:
    ThumbnailDecoder decoder()
    {
        return [this](const QString &path, int maximumPixelSize) {
            {
                const QMutexLocker locker(&m_mutex);
                // The analyzer takes the captured `this` for null.
                m_begun.append(path); // NOLINT(clang-analyzer-core.CallAndMessage)
            }
            (path.contains(QStringLiteral("/hung/")) ? m_mount : m_permits).acquire();
            if (path.contains(QStringLiteral("unreadable"))) {
                return DecodedThumbnail{};
            }
            QImage image(maximumPixelSize, 1, QImage::Format_RGB32);
            image.fill(Qt::red);
            return DecodedThumbnail{.image = image, .fileState = FileState{.size = 1}};
        };
    }

    void let(int count) { m_permits.release(count); }

    void letAll() { let(1'000'000); }

    void reviveMount() { m_mount.release(1000); }

    QStringList begun() const
    {
        const QMutexLocker locker(&m_mutex);
        return m_begun;
    }

private:
    mutable QMutex m_mutex;
    QStringList m_begun;
    QSemaphore m_permits;
    QSemaphore m_mount;
};

QString numbered(int number)
{
    return QStringLiteral("/shots/%1.png").arg(number);
}

} // namespace

class ThumbnailLoaderTest : public QObject {
    Q_OBJECT

private:
    using Tickets = std::vector<std::unique_ptr<ThumbnailTicket>>;

    /// A request that counts in `m_done` and keeps its image in `m_images`.
    void load(
        ThumbnailLoader &loader, const QString &path, Priority priority = Priority::Visible,
        int size = pixels)
    {
        m_tickets.push_back(loader.load(path, size, priority, [this, path](const QImage &image) {
            m_done.append(path);
            m_images.append(image);
            if (m_done.size() == m_awaited) {
                QTestEventLoop::instance().exitLoop();
            }
        }));
    }

    QString file(const QString &name, const QByteArray &bytes) const
    {
        const QString path = m_home.desktop() + u'/' + name;
        testImages::writeFile(path, bytes);
        return path;
    }

    static QThreadPool &pool() { return background::pool(BackgroundQueue::Thumbnails); }

    static int threadsAtFirst;

    TemporaryHome m_home;
    Tickets m_tickets;
    QStringList m_done;
    QList<QImage> m_images;
    qsizetype m_awaited = -1; // by an event loop

private Q_SLOTS:

    void init() { pool().setMaxThreadCount(1); }

    void cleanup()
    {
        m_tickets.clear();
        m_done.clear();
        m_images.clear();
        pool().waitForDone();
        QCOMPARE(pool().activeThreadCount(), 0);
    }

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
        const QString path = file(QStringLiteral("shot.png"), testImages::blackPng({400, 300}));
        QVERIFY(loader.cached(path, pixels).isNull());
        load(loader, path);
        QVERIFY2(m_done.isEmpty(), "later, not at once");
        QTRY_COMPARE_WITH_TIMEOUT(m_done, QStringList{path}, patience);
        QCOMPARE(m_images.constFirst().size(), QSize(100, 75));
        QCOMPARE(loader.cached(path, pixels), m_images.constFirst());
        QVERIFY2(loader.cached(path, pixels + 1).isNull(), "another size is another thumbnail");
    }

    void whatIsInMemoryIsNotDecodedAgain()
    {
        RecordingDecoder decoder;
        decoder.letAll();
        ThumbnailLoader loader({.decode = decoder.decoder()});
        const auto use = loader.use();
        load(loader, numbered(1));
        QTRY_COMPARE_WITH_TIMEOUT(m_done.size(), 1, patience);
        load(loader, numbered(1));
        QCOMPARE(m_done.size(), 1);
        QTRY_COMPARE_WITH_TIMEOUT(m_done.size(), 2, patience);
        QCOMPARE(m_images.at(1), m_images.at(0));
        QCOMPARE(decoder.begun().size(), 1);
    }

    void requestsForTheSameThumbnailShareADecode()
    {
        RecordingDecoder decoder;
        ThumbnailLoader loader({.decode = decoder.decoder()});
        const auto use = loader.use();
        load(loader, numbered(1)); // begins
        load(loader, numbered(1));
        load(loader, numbered(2)); // waits
        load(loader, numbered(2));
        decoder.letAll();
        QTRY_COMPARE_WITH_TIMEOUT(m_done.size(), 4, patience);
        QCOMPARE(decoder.begun(), QStringList({numbered(1), numbered(2)}));
    }

    void anotherSizeIsAnotherDecode()
    {
        RecordingDecoder decoder;
        decoder.letAll();
        ThumbnailLoader loader({.decode = decoder.decoder()});
        const auto use = loader.use();
        load(loader, numbered(1), Priority::Visible, 160);
        load(loader, numbered(1), Priority::Visible, 240);
        QTRY_COMPARE_WITH_TIMEOUT(m_done.size(), 2, patience);
        QCOMPARE(m_images.at(0).width(), 160);
        QCOMPARE(m_images.at(1).width(), 240);
        QCOMPARE(loader.cache().count(), 2);
    }

    void whatIsVisibleComesFirst()
    {
        RecordingDecoder decoder;
        ThumbnailLoader loader({.decode = decoder.decoder()});
        const auto use = loader.use();
        load(loader, numbered(0)); // begins at once
        load(loader, numbered(1), Priority::Nearby);
        load(loader, numbered(2), Priority::Nearby);
        load(loader, numbered(3), Priority::Visible);
        load(loader, numbered(4), Priority::Visible);
        load(loader, numbered(5), Priority::Nearby);
        load(loader, numbered(6), Priority::Visible);
        m_tickets.at(5)->setPriority(Priority::Visible); // behind the other visible ones
        m_tickets.at(4)->setPriority(Priority::Nearby);
        load(loader, numbered(2), Priority::Visible); // someone else sees it
        decoder.letAll();
        QTRY_COMPARE_WITH_TIMEOUT(m_done.size(), 8, patience);
        QStringList expected;
        for (const int number : {0, 3, 6, 5, 2, 1, 4}) {
            expected.append(numbered(number));
        }
        QCOMPARE(decoder.begun(), expected);
    }

    void theDecodeFallsBackWhenWhoSawItGoes()
    {
        RecordingDecoder decoder;
        ThumbnailLoader loader({.decode = decoder.decoder()});
        const auto use = loader.use();
        load(loader, numbered(0));
        load(loader, numbered(1), Priority::Nearby);
        load(loader, numbered(1), Priority::Visible);
        load(loader, numbered(2), Priority::Visible);
        m_tickets.at(2).reset();
        decoder.letAll();
        QTRY_COMPARE_WITH_TIMEOUT(m_done.size(), 3, patience);
        QCOMPARE(decoder.begun(), QStringList({numbered(0), numbered(2), numbered(1)}));
    }

    void whatNobodyWaitsForAnyMoreIsNeverDecoded()
    {
        RecordingDecoder decoder;
        ThumbnailLoader loader({.decode = decoder.decoder()});
        const auto use = loader.use();
        load(loader, numbered(0));
        load(loader, numbered(1));
        load(loader, numbered(2));
        load(loader, numbered(2));
        m_tickets.at(1).reset();
        m_tickets.at(2).reset(); // the other one still waits
        decoder.letAll();
        QTRY_COMPARE_WITH_TIMEOUT(m_done.size(), 2, patience);
        QCOMPARE(decoder.begun(), QStringList({numbered(0), numbered(2)}));
        QCOMPARE(m_done, QStringList({numbered(0), numbered(2)}));
    }

    void whatWasUnderWayIsKeptThoughNobodyWaits()
    {
        RecordingDecoder decoder;
        ThumbnailLoader loader({.decode = decoder.decoder()});
        const auto use = loader.use();
        load(loader, numbered(0));
        QTRY_COMPARE_WITH_TIMEOUT(decoder.begun().size(), 1, patience);
        m_tickets.clear();
        decoder.letAll();
        QTRY_VERIFY_WITH_TIMEOUT(!loader.cached(numbered(0), pixels).isNull(), patience);
        QVERIFY(m_done.isEmpty());
    }

    void joiningADecodeThatNobodyWaitsForBeginsNoOther()
    {
        RecordingDecoder decoder;
        ThumbnailLoader loader({.decode = decoder.decoder()});
        const auto use = loader.use();
        load(loader, numbered(0));
        m_tickets.clear();
        load(loader, numbered(0));
        decoder.letAll();
        QTRY_COMPARE_WITH_TIMEOUT(m_done.size(), 1, patience);
        QCOMPARE(decoder.begun().size(), 1);
    }

    void aTicketMayGoWhileItIsServed()
    {
        RecordingDecoder decoder;
        ThumbnailLoader loader({.decode = decoder.decoder()});
        const auto use = loader.use();
        std::unique_ptr<ThumbnailTicket> first;
        std::unique_ptr<ThumbnailTicket> second;
        int calls = 0;
        const auto done = [&](const QImage &) {
            ++calls;
            first.reset();
            second.reset();
            load(loader, numbered(1));
        };
        first = loader.load(numbered(0), pixels, Priority::Visible, done);
        second = loader.load(numbered(0), pixels, Priority::Visible, done);
        decoder.letAll();
        QTRY_COMPARE_WITH_TIMEOUT(m_done, QStringList{numbered(1)}, patience);
        QCOMPARE(calls, 1);
    }

    void aTicketMayOutliveTheLoader()
    {
        RecordingDecoder decoder;
        decoder.letAll();
        auto loader = std::make_unique<ThumbnailLoader>(ThumbnailLoaderOptions{.decode = decoder.decoder()});
        auto use = loader->use();
        load(*loader, numbered(0));
        loader.reset();
        m_tickets.front()->setPriority(Priority::Nearby);
        m_tickets.clear();
        use.reset();
        pool().waitForDone();
        QCoreApplication::sendPostedEvents();
        QVERIFY(m_done.isEmpty());
    }

    void anUnreadableFileIsToldOnceAndNotDecodedAgain()
    {
        RecordingDecoder decoder;
        decoder.letAll();
        ThumbnailLoader loader({.decode = decoder.decoder()});
        const auto use = loader.use();
        load(loader, QStringLiteral("/shots/unreadable.png"));
        QTRY_COMPARE_WITH_TIMEOUT(m_done.size(), 1, patience);
        load(loader, QStringLiteral("/shots/unreadable.png"));
        QTRY_COMPARE_WITH_TIMEOUT(m_done.size(), 2, patience);
        QVERIFY(m_images.at(0).isNull());
        QVERIFY(m_images.at(1).isNull());
        QCOMPARE(decoder.begun().size(), 1);
    }

    void whatCanNotBeReadDoesNotStopTheOthers()
    {
        pool().setMaxThreadCount(2);
        constexpr int count = 10'000;
        ThumbnailLoader loader;
        const auto use = loader.use();
        const QString readable = file(QStringLiteral("readable.png"), testImages::blackPng({4, 3}));
        for (int index = 0; index < count; ++index) {
            // Of the same file in as many sizes, and of as many that aren't there.
            if (index % 2 == 0) {
                load(loader, readable, Priority::Visible, index + 1);
            } else {
                load(loader, m_home.desktop() + QStringLiteral("/none %1.png").arg(index));
            }
        }
        // Not by QTRY, which looks every ten milliseconds and sleeps in between.
        m_awaited = count;
        QTestEventLoop::instance().enterLoopMSecs(patience);
        QCOMPARE(m_done.size(), count);
        QCOMPARE(std::ranges::count_if(m_images, &QImage::isNull), count / 2);
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
            load(loader, QStringLiteral("/hung/%1.png").arg(index));
        }
        for (int index = 0; index < 50; ++index) {
            load(loader, numbered(index));
        }
        QTRY_COMPARE_WITH_TIMEOUT(m_done.size(), 50, patience);
        QVERIFY2(
            decoder.begun().filter(QStringLiteral("/hung/")).size() <= 5,
            qPrintable(decoder.begun().join(u' ')));
        decoder.reviveMount();
        QTRY_COMPARE_WITH_TIMEOUT(m_done.size(), 100, patience);
        QCOMPARE(pool().maxThreadCount(), 2);
    }

    void aSlowFileHoldsUpNothingForGood()
    {
        RecordingDecoder decoder;
        decoder.letAll();
        ThumbnailLoader loader({.decode = decoder.decoder(), .hangLimit = 5ms});
        const auto use = loader.use();
        load(loader, QStringLiteral("/hung/1.png"));
        load(loader, QStringLiteral("/hung/2.png"));
        load(loader, QStringLiteral("/hung/3.png"));
        QTRY_VERIFY_WITH_TIMEOUT(decoder.begun().size() >= 2, patience);
        decoder.reviveMount();
        QTRY_COMPARE_WITH_TIMEOUT(m_done.size(), 3, patience);
    }

    void afterTheLastUseNothingIsLeft()
    {
        RecordingDecoder decoder;
        decoder.letAll();
        ThumbnailLoader loader({.decode = decoder.decoder(), .releaseDelay = 1ms});
        auto popover = loader.use();
        auto window = loader.use();
        load(loader, numbered(1));
        load(loader, QStringLiteral("/shots/unreadable.png"));
        QTRY_COMPARE_WITH_TIMEOUT(m_done.size(), 2, patience);
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
        load(loader, numbered(1));
        QTRY_COMPARE_WITH_TIMEOUT(m_done.size(), 1, patience);
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
        load(loader, numbered(1));
        QTRY_COMPARE_WITH_TIMEOUT(decoder.begun().size(), 1, patience);
        m_tickets.clear();
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

    void changedAndVanishedFilesAreForgotten()
    {
        ThumbnailLoader loader;
        const auto use = loader.use();
        const QString same = file(QStringLiteral("same.png"), testImages::blackPng({4, 3}));
        const QString changed = file(QStringLiteral("changed.png"), testImages::blackPng({4, 3}));
        const QString touched = file(QStringLiteral("touched.png"), testImages::blackPng({4, 3}));
        const QString replaced = file(QStringLiteral("replaced.png"), testImages::blackPng({4, 3}));
        const QString gone = file(QStringLiteral("gone.png"), testImages::blackPng({4, 3}));
        const QString unfinished =
            file(QStringLiteral("unfinished.png"), testImages::blackPng({4, 3}).chopped(5));
        const QString come = m_home.desktop() + QStringLiteral("/come.png");
        const QString missing = m_home.desktop() + QStringLiteral("/missing.png");
        const QStringList paths = {same, changed, touched, replaced, gone, unfinished, come, missing};
        for (const QString &path : paths) {
            load(loader, path);
            load(loader, path, Priority::Visible, 2 * pixels);
        }
        QTRY_COMPARE_WITH_TIMEOUT(m_done.size(), 2 * paths.size(), patience);

        testImages::writeFile(changed, testImages::blackPng({5, 3}));
        files::makeOlder(touched, 100);
        files::remove(replaced);
        testImages::writeFile(replaced, testImages::blackPng({4, 3}));
        files::remove(gone);
        testImages::writeFile(unfinished, testImages::blackPng({4, 3}));
        testImages::writeFile(come, testImages::blackPng({4, 3}));
        QSignalSpy dropped(&loader, &ThumbnailLoader::dropped);
        loader.revalidate();
        QTRY_COMPARE_WITH_TIMEOUT(dropped.size(), 6, patience);
        QSet<QString> told;
        for (const auto &arguments : dropped) {
            told.insert(arguments.constFirst().toString());
        }
        QCOMPARE(told, QSet<QString>({changed, touched, replaced, gone, unfinished, come}));
        QVERIFY(!loader.cached(same, pixels).isNull());
        QVERIFY(loader.cached(changed, pixels).isNull());
        QVERIFY(loader.cached(changed, 2 * pixels).isNull());
        QCOMPARE(loader.cache().count(), 4);
        load(loader, unfinished);
        QTRY_VERIFY_WITH_TIMEOUT(!loader.cached(unfinished, pixels).isNull(), patience);
    }

    void lookingTwiceAtOnceTellsOnce()
    {
        ThumbnailLoader loader;
        const auto use = loader.use();
        const QString first = file(QStringLiteral("first.png"), testImages::blackPng({4, 3}));
        load(loader, first);
        QTRY_COMPARE_WITH_TIMEOUT(m_done.size(), 1, patience);
        QSignalSpy dropped(&loader, &ThumbnailLoader::dropped);
        QSemaphore mayLook;
        for (int index = 0; index < 2; ++index) {
            background::pool(BackgroundQueue::Listing).start([&mayLook] { mayLook.acquire(); });
        }
        loader.revalidate();
        loader.revalidate();
        files::remove(first);
        mayLook.release(2);
        QTRY_COMPARE_WITH_TIMEOUT(dropped.size(), 1, patience);
        background::pool(BackgroundQueue::Listing).waitForDone();
        QCoreApplication::sendPostedEvents();
        QCOMPARE(dropped.size(), 1);
    }

    void foldersAndPipesAreNoImages()
    {
        ThumbnailLoader loader;
        const auto use = loader.use();
        const QString folder = m_home.desktop() + QStringLiteral("/folder.png");
        files::makeFolder(folder);
        const QString pipe = m_home.desktop() + QStringLiteral("/pipe.png");
        QCOMPARE(::mkfifo(QFile::encodeName(pipe).constData(), 0600), 0);
        load(loader, folder);
        load(loader, pipe);
        load(loader, QString());
        QTRY_COMPARE_WITH_TIMEOUT(m_done.size(), 3, patience);
        QVERIFY(std::ranges::all_of(m_images, &QImage::isNull));
    }

    void theProgramHasOne() { QCOMPARE(&ThumbnailLoader::shared(), &ThumbnailLoader::shared()); }
};

int ThumbnailLoaderTest::threadsAtFirst = background::pool(BackgroundQueue::Thumbnails).maxThreadCount();

QTEST_GUILESS_MAIN(ThumbnailLoaderTest)
#include "ThumbnailLoaderTest.moc"
