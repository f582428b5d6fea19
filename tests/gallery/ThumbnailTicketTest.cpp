#include "ThumbnailTicket.h"

#include "RecordingDecoder.h"
#include "ThumbnailRequests.h"

#include <memory>

using namespace thumbnails;

/// Who waits for a thumbnail: what comes first, what is shared, and what is no longer wanted.
class ThumbnailTicketTest final : public QObject {
    Q_OBJECT

private:
    ThumbnailRequests m_requests;

private Q_SLOTS:

    void init() { pool().setMaxThreadCount(1); }

    void cleanup() { m_requests.clear(); }

    void requestsForTheSameThumbnailShareADecode()
    {
        RecordingDecoder decoder;
        ThumbnailLoader loader({.decode = decoder.decoder()});
        const auto use = loader.use();
        m_requests.load(loader, numbered(1)); // begins
        m_requests.load(loader, numbered(1));
        m_requests.load(loader, numbered(2)); // waits
        m_requests.load(loader, numbered(2));
        decoder.letAll();
        QTRY_COMPARE_WITH_TIMEOUT(m_requests.done().size(), 4, patience);
        QCOMPARE(decoder.begun(), QStringList({numbered(1), numbered(2)}));
    }

    void whatIsVisibleComesFirst()
    {
        RecordingDecoder decoder;
        ThumbnailLoader loader({.decode = decoder.decoder()});
        const auto use = loader.use();
        m_requests.load(loader, numbered(0)); // begins at once
        m_requests.load(loader, numbered(1), ThumbnailPriority::Nearby);
        m_requests.load(loader, numbered(2), ThumbnailPriority::Nearby);
        m_requests.load(loader, numbered(3), ThumbnailPriority::Visible);
        m_requests.load(loader, numbered(4), ThumbnailPriority::Visible);
        m_requests.load(loader, numbered(5), ThumbnailPriority::Nearby);
        m_requests.load(loader, numbered(6), ThumbnailPriority::Visible);
        m_requests.tickets().at(5)->setPriority(ThumbnailPriority::Visible); // behind the other visible ones
        m_requests.tickets().at(4)->setPriority(ThumbnailPriority::Nearby);
        m_requests.load(loader, numbered(2), ThumbnailPriority::Visible); // someone else sees it
        decoder.letAll();
        QTRY_COMPARE_WITH_TIMEOUT(m_requests.done().size(), 8, patience);
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
        m_requests.load(loader, numbered(0));
        m_requests.load(loader, numbered(1), ThumbnailPriority::Nearby);
        m_requests.load(loader, numbered(1), ThumbnailPriority::Visible);
        m_requests.load(loader, numbered(2), ThumbnailPriority::Visible);
        m_requests.tickets().at(2).reset();
        decoder.letAll();
        QTRY_COMPARE_WITH_TIMEOUT(m_requests.done().size(), 3, patience);
        QCOMPARE(decoder.begun(), QStringList({numbered(0), numbered(2), numbered(1)}));
    }

    void whatNobodyWaitsForAnyMoreIsNeverDecoded()
    {
        RecordingDecoder decoder;
        ThumbnailLoader loader({.decode = decoder.decoder()});
        const auto use = loader.use();
        m_requests.load(loader, numbered(0));
        m_requests.load(loader, numbered(1));
        m_requests.load(loader, numbered(2));
        m_requests.load(loader, numbered(2));
        m_requests.tickets().at(1).reset();
        m_requests.tickets().at(2).reset(); // the other one still waits
        decoder.letAll();
        QTRY_COMPARE_WITH_TIMEOUT(m_requests.done().size(), 2, patience);
        QCOMPARE(decoder.begun(), QStringList({numbered(0), numbered(2)}));
        QCOMPARE(m_requests.done(), QStringList({numbered(0), numbered(2)}));
    }

    void whatWasUnderWayIsKeptThoughNobodyWaits()
    {
        RecordingDecoder decoder;
        ThumbnailLoader loader({.decode = decoder.decoder()});
        const auto use = loader.use();
        m_requests.load(loader, numbered(0));
        QTRY_COMPARE_WITH_TIMEOUT(decoder.begun().size(), 1, patience);
        m_requests.tickets().clear();
        decoder.letAll();
        QTRY_VERIFY_WITH_TIMEOUT(!loader.cached(numbered(0), pixels).isNull(), patience);
        QVERIFY(m_requests.done().isEmpty());
    }

    void joiningADecodeThatNobodyWaitsForBeginsNoOther()
    {
        RecordingDecoder decoder;
        ThumbnailLoader loader({.decode = decoder.decoder()});
        const auto use = loader.use();
        m_requests.load(loader, numbered(0));
        m_requests.tickets().clear();
        m_requests.load(loader, numbered(0));
        decoder.letAll();
        QTRY_COMPARE_WITH_TIMEOUT(m_requests.done().size(), 1, patience);
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
            m_requests.load(loader, numbered(1));
        };
        first = loader.load(numbered(0), pixels, ThumbnailPriority::Visible, done);
        second = loader.load(numbered(0), pixels, ThumbnailPriority::Visible, done);
        decoder.letAll();
        QTRY_COMPARE_WITH_TIMEOUT(m_requests.done(), QStringList{numbered(1)}, patience);
        QCOMPARE(calls, 1);
    }

    void aTicketMayOutliveTheLoader()
    {
        RecordingDecoder decoder;
        decoder.letAll();
        auto loader = std::make_unique<ThumbnailLoader>(ThumbnailLoaderOptions{.decode = decoder.decoder()});
        auto use = loader->use();
        m_requests.load(*loader, numbered(0));
        loader.reset();
        m_requests.tickets().front()->setPriority(ThumbnailPriority::Nearby);
        m_requests.tickets().clear();
        use.reset();
        pool().waitForDone();
        QCoreApplication::sendPostedEvents();
        QVERIFY(m_requests.done().isEmpty());
    }
};

QTEST_GUILESS_MAIN(ThumbnailTicketTest)
#include "ThumbnailTicketTest.moc"
