#include "RecordingDecoder.h"
#include "TemporaryHome.h"
#include "TestImages.h"
#include "ThumbnailRequests.h"
#include "files.h"

#include <QSemaphore>
#include <QSet>
#include <QSignalSpy>

using namespace thumbnails;

/// What a loader forgets of files that have changed or gone.
class ThumbnailRevalidationTest final : public QObject {
    Q_OBJECT

private:
    QString file(const QString &name, const QByteArray &bytes) const
    {
        const QString path = m_home.desktop() + u'/' + name;
        testImages::writeFile(path, bytes);
        return path;
    }

    TemporaryHome m_home;
    ThumbnailRequests m_requests;

private Q_SLOTS:

    void init() { pool().setMaxThreadCount(1); }

    void cleanup() { m_requests.clear(); }

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
            m_requests.load(loader, path);
            m_requests.load(loader, path, ThumbnailPriority::Visible, 2 * pixels);
        }
        QTRY_COMPARE_WITH_TIMEOUT(m_requests.done().size(), 2 * paths.size(), patience);

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
        m_requests.load(loader, unfinished);
        QTRY_VERIFY_WITH_TIMEOUT(!loader.cached(unfinished, pixels).isNull(), patience);
    }

    void whatIsUnderWayFromAChangedFileIsDecodedAnew()
    {
        RecordingDecoder decoder;
        ThumbnailLoader loader({.decode = decoder.decoder()});
        const auto use = loader.use();
        decoder.let(1);
        m_requests.load(loader, numbered(1)); // there is no such file any more
        QTRY_COMPARE_WITH_TIMEOUT(m_requests.done().size(), 1, patience);
        m_requests.load(loader, numbered(1), ThumbnailPriority::Visible, 2 * pixels);
        m_requests.load(loader, numbered(1), ThumbnailPriority::Visible, 3 * pixels); // waits
        QTRY_COMPARE_WITH_TIMEOUT(decoder.begun().size(), 2, patience);
        // As the cells that show it.
        connect(&loader, &ThumbnailLoader::dropped, this, [this, &loader](const QString &path) {
            m_requests.load(loader, path, ThumbnailPriority::Visible, 2 * pixels);
        });
        QSignalSpy dropped(&loader, &ThumbnailLoader::dropped);
        loader.revalidate();
        QTRY_COMPARE_WITH_TIMEOUT(dropped.size(), 1, patience);
        decoder.let(1);
        QTRY_COMPARE_WITH_TIMEOUT(decoder.begun().size(), 3, patience);
        QCOMPARE(m_requests.done().size(), 1);
        QVERIFY(loader.cached(numbered(1), 2 * pixels).isNull());
        decoder.letAll();
        QTRY_COMPARE_WITH_TIMEOUT(m_requests.done().size(), 4, patience);
        QCOMPARE(decoder.begun().size(), 4);
        for (const QImage &image : m_requests.images().sliced(1)) {
            QVERIFY(image.pixel(0, 0) >= RecordingDecoder::color(3));
        }
        QVERIFY(!loader.cached(numbered(1), 2 * pixels).isNull());
    }

    void whatNobodyWaitsForIsNotKeptFromAChangedFile()
    {
        RecordingDecoder decoder;
        ThumbnailLoader loader({.decode = decoder.decoder()});
        const auto use = loader.use();
        decoder.let(1);
        m_requests.load(loader, numbered(1));
        QTRY_COMPARE_WITH_TIMEOUT(m_requests.done().size(), 1, patience);
        m_requests.load(loader, numbered(1), ThumbnailPriority::Visible, 2 * pixels);
        QTRY_COMPARE_WITH_TIMEOUT(decoder.begun().size(), 2, patience);
        m_requests.tickets().clear();
        QSignalSpy dropped(&loader, &ThumbnailLoader::dropped);
        loader.revalidate();
        QTRY_COMPARE_WITH_TIMEOUT(dropped.size(), 1, patience);
        decoder.letAll();
        m_requests.load(loader, numbered(2));
        QTRY_COMPARE_WITH_TIMEOUT(m_requests.done().size(), 2, patience);
        QCOMPARE(loader.cache().count(), 1);
        QVERIFY(loader.cached(numbered(1), 2 * pixels).isNull());
    }

    void lookingTwiceAtOnceTellsOnce()
    {
        ThumbnailLoader loader;
        const auto use = loader.use();
        const QString first = file(QStringLiteral("first.png"), testImages::blackPng({4, 3}));
        m_requests.load(loader, first);
        QTRY_COMPARE_WITH_TIMEOUT(m_requests.done().size(), 1, patience);
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
};

QTEST_GUILESS_MAIN(ThumbnailRevalidationTest)
#include "ThumbnailRevalidationTest.moc"
