#include "ThumbnailCache.h"

#include <QTest>

namespace {

constexpr qsizetype kibibyte = 1024;

/// Of 64 KiB.
DecodedThumbnail thumbnail(QRgb color = qRgb(1, 2, 3))
{
    QImage image(128, 128, QImage::Format_RGB32);
    image.fill(color);
    return {.image = image, .fileState = FileState{.inode = color}};
}

QString path(int number)
{
    return QStringLiteral("/home/Screenshot %1.png").arg(number);
}

} // namespace

class ThumbnailCacheTest : public QObject {
    Q_OBJECT

private:
    static bool holds(const ThumbnailCache &cache, int number)
    {
        // Not by asking for the image, which would change the order.
        const auto origins = cache.origins();
        return std::ranges::any_of(
            origins, [number](const ThumbnailCache::Origin &origin) { return origin.path == path(number); });
    }

private Q_SLOTS:

    void theKeyIsPathAndSize()
    {
        QCOMPARE(
            ThumbnailCache::key(QStringLiteral("/home/a b.png"), 240), QStringLiteral("/home/a b.png|240"));
        QVERIFY(ThumbnailCache::key(path(1), 160) != ThumbnailCache::key(path(1), 240));
    }

    void whatWasInsertedIsThere()
    {
        ThumbnailCache cache;
        cache.insert(path(1), 128, thumbnail());
        QCOMPARE(cache.image(ThumbnailCache::key(path(1), 128)), std::optional(thumbnail().image));
        QCOMPARE(cache.image(ThumbnailCache::key(path(1), 127)), std::nullopt);
        QCOMPARE(cache.image(ThumbnailCache::key(path(2), 128)), std::nullopt);
    }

    void thatAFileHasNoneIsKnownToo()
    {
        ThumbnailCache cache;
        cache.insert(path(1), 128, {});
        const auto image = cache.image(ThumbnailCache::key(path(1), 128));
        QVERIFY(image.has_value());
        QVERIFY(image->isNull());
    }

    void whatWasAskedForLongestAgoGoesFirst()
    {
        ThumbnailCache cache(200 * kibibyte); // three of them
        for (const int number : {1, 2, 3}) {
            cache.insert(path(number), 128, thumbnail());
        }
        QVERIFY(cache.image(ThumbnailCache::key(path(1), 128)).has_value());
        cache.insert(path(4), 128, thumbnail());
        QVERIFY(holds(cache, 1));
        QVERIFY(!holds(cache, 2));
        QVERIFY(holds(cache, 3));
        QVERIFY(holds(cache, 4));
    }

    void theLimitHolds()
    {
        ThumbnailCache cache(1000 * kibibyte);
        for (int number = 0; number < 500; ++number) {
            cache.insert(path(number), 128, thumbnail());
            QVERIFY(cache.bytes() <= 1000 * kibibyte);
        }
        QCOMPARE(cache.count(), 15);
        QVERIFY(cache.bytes() > kibibyte * 15 * 64);
    }

    void anImageLargerThanTheLimitIsNotKept()
    {
        ThumbnailCache cache(10 * kibibyte);
        cache.insert(path(1), 128, thumbnail());
        QCOMPARE(cache.count(), 0);
        QCOMPARE(cache.bytes(), 0);
    }

    void aSecondOneTakesTheFirstOnesPlace()
    {
        ThumbnailCache cache;
        cache.insert(path(1), 128, thumbnail(qRgb(255, 0, 0)));
        const qsizetype bytes = cache.bytes();
        cache.insert(path(1), 128, thumbnail(qRgb(0, 255, 0)));
        QCOMPARE(cache.count(), 1);
        QCOMPARE(cache.bytes(), bytes);
        QCOMPARE(
            cache.image(ThumbnailCache::key(path(1), 128)), std::optional(thumbnail(qRgb(0, 255, 0)).image));
    }

    void onlyWhatIsStillThatOfTheOriginIsRemoved()
    {
        ThumbnailCache cache;
        cache.insert(path(1), 128, thumbnail(qRgb(255, 0, 0)));
        const ThumbnailCache::Origin old = cache.origins().constFirst();
        cache.insert(path(1), 128, thumbnail(qRgb(0, 255, 0)));
        QVERIFY(!cache.remove(old));
        QCOMPARE(cache.count(), 1);
        QVERIFY(cache.remove(cache.origins().constFirst()));
        QCOMPARE(cache.count(), 0);
        QCOMPARE(cache.bytes(), 0);
        QVERIFY(!cache.remove(old));
    }

    void afterClearingNothingIsLeft()
    {
        ThumbnailCache cache;
        cache.insert(path(1), 128, thumbnail());
        cache.clear();
        QCOMPARE(cache.count(), 0);
        QCOMPARE(cache.bytes(), 0);
        QCOMPARE(cache.image(ThumbnailCache::key(path(1), 128)), std::nullopt);
    }
};

QTEST_GUILESS_MAIN(ThumbnailCacheTest)
#include "ThumbnailCacheTest.moc"
