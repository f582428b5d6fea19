#include "SharedThumbnailCache.h"

#include "FileManager.h"
#include "GioLeak.h"
#include "SharedThumbnailCacheFixture.h"

namespace {

int permissions(const QString &path)
{
    return static_cast<int>(statusOf(path).st_mode & 0777);
}

} // namespace

/// Which entries are left for others, and how long they stay.
class SharedThumbnailCacheWritingTest final : public SharedThumbnailCacheFixture {
    Q_OBJECT

private Q_SLOTS:

    void init() { emptyHome(); }

    void anEntryIsLeftForOthers()
    {
        const QString path = oldFile();
        QCOMPARE(thumbnail(path).size(), QSize(240, 180));
        const QString file = entry(path);
        QVERIFY(files::exists(file));
        QCOMPARE(entryCount(), 1);
        const QImage stored(file);
        QCOMPARE(stored.size(), QSize(256, 192));
        QCOMPARE(color(stored), ofFile);
        const auto text = [&stored](const char *keyword) {
            return stored.text(QString::fromLatin1(keyword)).toLatin1();
        };
        QCOMPARE(text("Thumb::URI"), gioUri(path));
        QCOMPARE(text("Thumb::MTime"), modified(path));
        QCOMPARE(text("Thumb::Size"), QByteArray::number(qint64(statusOf(path).st_size)));
        QCOMPARE(text("Thumb::Mimetype"), "image/png");
        QCOMPARE(text("Thumb::Image::Width"), "1200");
        QCOMPARE(text("Thumb::Image::Height"), "900");
        QCOMPARE(text("Software"), "Deskbroom");
    }

    void onlyTheOwnerMayRead()
    {
        const mode_t mask = ::umask(0);
        const QString path = oldFile();
        std::ignore = thumbnail(path);
        ::umask(mask);
        QCOMPARE(permissions(entry(path)), 0600);
        const QStringList folders = {
            m_home.path() + QStringLiteral("/.cache"), root(), root() + QStringLiteral("/large")};
        for (const QString &folder : folders) {
            QCOMPARE(permissions(folder), 0700);
        }
    }

    void theEntryHasTheClassOfTheRequest_data()
    {
        QTest::addColumn<int>("maximum");
        QTest::addColumn<QString>("folder");
        QTest::addColumn<int>("width");
        QTest::newRow("small") << 100 << QStringLiteral("normal") << 128;
        QTest::newRow("as large as normal") << 128 << QStringLiteral("normal") << 128;
        QTest::newRow("a pixel more") << 129 << QStringLiteral("large") << 256;
        QTest::newRow("large cells") << 400 << QStringLiteral("x-large") << 512;
        QTest::newRow("the largest") << 1024 << QStringLiteral("xx-large") << 1024;
    }

    void theEntryHasTheClassOfTheRequest()
    {
        QFETCH(const int, maximum);
        QFETCH(const QString, folder);
        const QString path = oldFile();
        QCOMPARE(thumbnail(path, maximum).width(), maximum);
        QCOMPARE(entryCount(), 1);
        QTEST(QImage(entry(path, folder)).width(), "width");
    }

    void whatIsLargerThanAnyClassHasNone()
    {
        const QString path = oldFile();
        QCOMPARE(thumbnail(path, 1025).width(), 1025);
        QCOMPARE(entryCount(), 0);
    }

    void whatIsReadAsQuicklyItselfHasNone()
    {
        const QString path = oldFile(QStringLiteral("small.png"), testImages::blackPng({240, 100}));
        QCOMPARE(thumbnail(path).size(), QSize(240, 100));
        QCOMPARE(entryCount(), 0);
    }

    void theFirstOneIsAsWithoutTheCache_data()
    {
        QTest::addColumn<QByteArray>("bytes");
        QImage picture(901, 577, QImage::Format_RGB32);
        for (int y = 0; y < picture.height(); ++y) {
            for (int x = 0; x < picture.width(); ++x) {
                picture.setPixel(x, y, qRgb(x * 255 / 901, y * 255 / 577, (x / 40 + y / 30) % 2 * 255));
            }
        }
        for (const char *const format : {"png", "jpeg", "webp", "bmp", "tiff"}) {
            QTest::newRow(format) << testImages::encoded(picture, format);
        }
        QTest::newRow("turned") << testImages::withExif(testImages::encoded(picture, "jpeg"), 6, {});
        picture.fill(qRgba(200, 100, 0, 100));
        QTest::newRow("transparent") << testImages::encoded(
            picture.convertToFormat(QImage::Format_ARGB32), "png");
    }

    void theFirstOneIsAsWithoutTheCache()
    {
        QFETCH(const QByteArray, bytes);
        const QString path = oldFile(QStringLiteral("picture"), bytes);
        const QImage first = thumbnail(path, 256);
        const auto source = ImageSource::create(QUrl::fromLocalFile(path));
        QVERIFY(source.has_value());
        const auto alone = source->thumbnail(256);
        QVERIFY(alone.has_value());
        QCOMPARE(first.size(), alone->size());
        QCOMPARE(entryCount(), 1);
        // Of the same size as the entry, it comes back exactly; JPEG may be decoded at another fraction.
        const QImage again = thumbnail(path, 256);
        QCOMPARE(
            again.convertToFormat(QImage::Format_RGBA8888), first.convertToFormat(QImage::Format_RGBA8888));
        if (!bytes.startsWith("\xff\xd8")) {
            QCOMPARE(first, *alone);
        }
        QCOMPARE(again.size(), first.size());
        QCOMPARE(thumbnail(path, 200).size(), source->thumbnail(200).value_or(QImage()).size());
    }

    void aFileModifiedJustNowHasNone()
    {
        const QString path = m_home.desktop() + QStringLiteral("/new.png");
        testImages::writeFile(path, testImages::blackPng({1200, 900}));
        QCOMPARE(thumbnail(path).size(), QSize(240, 180));
        files::makeOlder(path, -100); // in the future
        QCOMPARE(thumbnail(path).size(), QSize(240, 180));
        QCOMPARE(entryCount(), 0);
    }

    void aFileThatChangesWhileItIsReadHasNone()
    {
        const QString path = oldFile();
        const auto state = FileManager::defaultManager().fileState(path);
        QVERIFY(state.has_value());
        const SharedThumbnailCache cache(QFile::encodeName(path));
        QVERIFY(cache.mayHold(*state));
        testImages::writeFile(path, testImages::blackPng({1200, 901}));
        cache.store(plain({256, 192}), 256, *state, {.size = {1200, 900}});
        QCOMPARE(entryCount(), 0);
        files::remove(path);
        cache.store(plain({256, 192}), 256, *state, {.size = {1200, 900}});
        QCOMPARE(entryCount(), 0);
    }

    void aFileThatIsReplacedWhileItIsReadHasNone()
    {
        const QString path = oldFile();
        const auto source = ImageSource::create(QUrl::fromLocalFile(path));
        QVERIFY(source.has_value());
        const QString other = oldFile(QStringLiteral("other.png"));
        files::remove(path);
        files::rename(other, path);
        QCOMPARE(source->sharedThumbnail(request).value_or(QImage()).size(), QSize(240, 180));
        QCOMPARE(entryCount(), 0);
    }

    void theCacheItselfHasNone()
    {
        const QString path = oldFile();
        std::ignore = thumbnail(path);
        const QString inside = entry(path);
        files::makeOlder(inside, 100);
        QCOMPARE(thumbnail(inside, 100).size(), QSize(100, 75));
        QCOMPARE(
            thumbnail(root() + QStringLiteral("/../thumbnails/large/") + entryName(path), 100).width(), 100);
        const QString link = m_home.desktop() + QStringLiteral("/link");
        QVERIFY(QFile::link(root(), link));
        QCOMPARE(thumbnail(link + QStringLiteral("/large/") + entryName(path), 100).width(), 100);
        QCOMPARE(entryCount(), 1);
    }

    void aCacheThatCanNotBeWrittenIsDoneWithout_data()
    {
        QTest::addColumn<QString>("obstacle");
        for (const char *const obstacle :
             {"read-only", "a file", "a broken link", "relative", "no folder may be made"}) {
            QTest::newRow(obstacle) << QString::fromLatin1(obstacle);
        }
    }

    void aCacheThatCanNotBeWrittenIsDoneWithout()
    {
        QFETCH(const QString, obstacle);
        const QString path = oldFile();
        const QString large = root() + QStringLiteral("/large");
        if (obstacle == QStringLiteral("read-only")) {
            files::makeFolder(large);
            QVERIFY(QFile::setPermissions(large, QFileDevice::ReadOwner | QFileDevice::ExeOwner));
        } else if (obstacle == QStringLiteral("a file")) {
            files::makeFolder(m_home.path() + QStringLiteral("/.cache"));
            testImages::writeFile(root(), "no folder");
        } else if (obstacle == QStringLiteral("a broken link")) {
            files::makeFolder(m_home.path() + QStringLiteral("/.cache"));
            QVERIFY(QFile::link(m_home.path() + QStringLiteral("/nowhere/at/all"), root()));
        } else if (obstacle == QStringLiteral("relative")) {
            qputenv("XDG_CACHE_HOME", "relative");
        } else {
            qputenv("XDG_CACHE_HOME", "/proc/none/at/all");
        }
        QCOMPARE(thumbnail(path).size(), QSize(240, 180));
        QCOMPARE(thumbnail(path).size(), QSize(240, 180));
        if (obstacle == QStringLiteral("read-only")) {
            QVERIFY(QFile::setPermissions(
                large, QFileDevice::ReadOwner | QFileDevice::WriteOwner | QFileDevice::ExeOwner));
            QCOMPARE(entryCount(), 0);
        }
        QVERIFY(!files::exists(QStringLiteral("relative/thumbnails")));
    }

    void theDefaultPlaceIsInTheHome()
    {
        qunsetenv("XDG_CACHE_HOME");
        const QString path = oldFile();
        std::ignore = thumbnail(path);
        QVERIFY(files::exists(entry(path)));
    }

    void aDeletedFilesEntriesGo()
    {
        const QString path = oldFile();
        const QString other = oldFile(QStringLiteral("other.png"));
        for (const int size : {100, 200, 400, 800}) {
            std::ignore = thumbnail(path, size);
        }
        std::ignore = thumbnail(other);
        files::makeFolder(root() + QStringLiteral("/fail/someone"));
        testImages::writeFile(root() + QStringLiteral("/fail/someone/") + entryName(path), "theirs");
        QVERIFY(FileManager::defaultManager().trashItem(QUrl::fromLocalFile(path)).has_value());
        for (const char *const folder : {"normal", "large", "x-large", "xx-large"}) {
            QVERIFY2(!files::exists(entry(path, QString::fromLatin1(folder))), folder);
        }
        QVERIFY(files::exists(entry(other)));
        QVERIFY(files::exists(root() + QStringLiteral("/fail/someone/") + entryName(path)));
    }

    void aFileThatStaysKeepsItsEntry()
    {
        const QString path = oldFile();
        std::ignore = thumbnail(path);
        QVERIFY(QFile::setPermissions(m_home.desktop(), QFileDevice::ReadOwner | QFileDevice::ExeOwner));
        const auto moved = FileManager::defaultManager().trashItem(QUrl::fromLocalFile(path));
        QVERIFY(QFile::setPermissions(
            m_home.desktop(), QFileDevice::ReadOwner | QFileDevice::WriteOwner | QFileDevice::ExeOwner));
        QVERIFY(!moved.has_value());
        QVERIFY(files::exists(entry(path)));
    }
};

QTEST_GUILESS_MAIN(SharedThumbnailCacheWritingTest)
#include "SharedThumbnailCacheWritingTest.moc"
