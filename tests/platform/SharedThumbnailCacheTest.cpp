#include "SharedThumbnailCache.h"

#include "FileManager.h"
#include "GioLeak.h"
#include "ImageSource.h"
#include "TemporaryHome.h"
#include "TestImages.h"
#include "files.h"

#include <QCryptographicHash>
#include <QDir>
#include <QFile>
#include <QTest>
#include <QUrl>

#include <gio/gio.h>
#include <png.h>
#include <sys/stat.h>

#include <array>
#include <memory>

namespace {

constexpr int request = 240;

/// The colours tell whether a thumbnail was made of the file or of an entry.
const QColor ofFile = Qt::black;
const QColor ofEntry = Qt::green;

QByteArray gioUri(const QString &path)
{
    const std::unique_ptr<char, decltype(&g_free)> uri(
        g_filename_to_uri(QFile::encodeName(path).constData(), nullptr, nullptr), &g_free);
    return {uri.get()};
}

QString entryName(const QString &path)
{
    return QString::fromLatin1(QCryptographicHash::hash(gioUri(path), QCryptographicHash::Md5).toHex()) +
           QStringLiteral(".png");
}

struct stat statusOf(const QString &path)
{
    struct stat status = {};
    if (::lstat(QFile::encodeName(path).constData(), &status) != 0) {
        qFatal("There is no %s", qPrintable(path));
    }
    return status;
}

int permissions(const QString &path)
{
    return static_cast<int>(statusOf(path).st_mode & 0777);
}

using Texts = QList<QPair<QByteArray, QByteArray>>;

QImage plain(QSize size, QColor color = ofEntry)
{
    QImage image(size, QImage::Format_RGB32);
    image.fill(color);
    return image;
}

/// As programs write it that use libpng for it.
QByteArray pngOfLibpng(const QImage &image, const Texts &texts)
{
    const QImage rows = image.convertToFormat(QImage::Format_RGBA8888);
    QByteArray bytes;
    png_structp png = png_create_write_struct(PNG_LIBPNG_VER_STRING, nullptr, nullptr, nullptr);
    png_infop info = png_create_info_struct(png);
    png_set_write_fn(
        png, &bytes,
        [](png_structp self, png_bytep data, size_t count) {
            static_cast<QByteArray *>(png_get_io_ptr(self))
                ->append(reinterpret_cast<const char *>(data), static_cast<qsizetype>(count));
        },
        nullptr);
    png_set_IHDR(
        png, info, static_cast<png_uint_32>(rows.width()), static_cast<png_uint_32>(rows.height()), 8,
        PNG_COLOR_TYPE_RGB_ALPHA, PNG_INTERLACE_NONE, PNG_COMPRESSION_TYPE_DEFAULT, PNG_FILTER_TYPE_DEFAULT);
    for (const auto &[keyword, text] : texts) {
        png_text entry = {};
        QByteArray key = keyword;
        QByteArray value = text;
        entry.compression = PNG_TEXT_COMPRESSION_NONE;
        entry.key = key.data();
        entry.text = value.data();
        entry.text_length = static_cast<size_t>(value.size());
        png_set_text(png, info, &entry, 1);
    }
    png_write_info(png, info);
    for (int y = 0; y < rows.height(); ++y) {
        png_write_row(png, rows.constScanLine(y));
    }
    png_write_end(png, info);
    png_destroy_write_struct(&png, &info);
    return bytes;
}

/// As programs write it that use the toolkit: it packs longer texts.
QByteArray pngOfToolkit(QImage image, const Texts &texts)
{
    for (const auto &[keyword, text] : texts) {
        image.setText(QString::fromLatin1(keyword), QString::fromLatin1(text));
    }
    return testImages::encoded(image, "png");
}

} // namespace

class SharedThumbnailCacheTest : public QObject {
    Q_OBJECT

private:
    [[nodiscard]] QString root() const { return m_home.path() + QStringLiteral("/.cache/thumbnails"); }

    [[nodiscard]] QString entry(const QString &path, const QString &folder = QStringLiteral("large")) const
    {
        return root() + u'/' + folder + u'/' + entryName(path);
    }

    /// Black, 1200 × 900, and so old that it may have an entry.
    [[nodiscard]] QString oldFile(const QString &name = QStringLiteral("shot.png")) const
    {
        return oldFile(name, testImages::blackPng({1200, 900}));
    }

    [[nodiscard]] QString oldFile(const QString &name, const QByteArray &bytes) const
    {
        const QString path = m_home.desktop() + u'/' + name;
        testImages::writeFile(path, bytes);
        files::makeOlder(path, 100);
        return path;
    }

    static QByteArray modified(const QString &path)
    {
        return QByteArray::number(qint64(statusOf(path).st_mtime));
    }

    /// What every entry of the file says, and `more`.
    static Texts texts(const QString &path, const Texts &more = {})
    {
        return Texts{{"Thumb::URI", gioUri(path)}, {"Thumb::MTime", modified(path)}} + more;
    }

    void writeEntry(
        const QString &path, const QByteArray &bytes, const QString &folder = QStringLiteral("large")) const
    {
        files::makeFolder(root() + u'/' + folder);
        testImages::writeFile(entry(path, folder), bytes);
    }

    static QImage thumbnail(const QString &path, int maximumPixelSize = request)
    {
        const auto source = ImageSource::create(QUrl::fromLocalFile(path));
        return source ? source->sharedThumbnail(maximumPixelSize).value_or(QImage()) : QImage();
    }

    static QColor color(const QImage &image)
    {
        return image.isNull() ? QColor() : image.pixelColor(image.rect().center());
    }

    [[nodiscard]] qsizetype entryCount() const
    {
        qsizetype count = 0;
        for (const QString &folder : QDir(root()).entryList(QDir::Dirs | QDir::NoDotAndDotDot)) {
            count += QDir(root() + u'/' + folder)
                         .entryList(QDir::AllEntries | QDir::NoDotAndDotDot | QDir::System | QDir::Hidden)
                         .size();
        }
        return count;
    }

    TemporaryHome m_home;

private Q_SLOTS:

    void init()
    {
        qputenv("XDG_CACHE_HOME", QFile::encodeName(m_home.path() + QStringLiteral("/.cache")));
        QDir(m_home.path() + QStringLiteral("/.cache")).removeRecursively();
        QDir desktop(m_home.desktop());
        desktop.removeRecursively();
        files::makeFolder(m_home.desktop());
    }

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

    void entriesOfOthersAreUsed_data()
    {
        QTest::addColumn<bool>("isByToolkit");
        QTest::addColumn<bool>("tellsSize");
        QTest::newRow("by libpng") << false << true;
        QTest::newRow("by libpng, without the file's size") << false << false;
        QTest::newRow("by the toolkit, with packed texts") << true << true;
    }

    void entriesOfOthersAreUsed()
    {
        QFETCH(const bool, isByToolkit);
        QFETCH(const bool, tellsSize);
        const QString path =
            oldFile(QStringLiteral("a long name that makes a URI long enough to be packed.png"));
        const Texts told = texts(
            path,
            tellsSize ? Texts{{"Thumb::Size", QByteArray::number(qint64(statusOf(path).st_size))}} : Texts());
        const QImage image = plain({256, 192});
        writeEntry(path, isByToolkit ? pngOfToolkit(image, told) : pngOfLibpng(image, told));
        const QImage made = thumbnail(path);
        QCOMPARE(made.size(), QSize(240, 180));
        QCOMPARE(color(made), ofEntry);
    }

    void ofSeveralThatAreLargeEnoughTheSmallestIsUsed()
    {
        const QString path = oldFile();
        writeEntry(path, pngOfLibpng(plain({128, 96}, Qt::red), texts(path)), QStringLiteral("normal"));
        writeEntry(path, pngOfLibpng(plain({512, 384}, Qt::blue), texts(path)), QStringLiteral("x-large"));
        QCOMPARE(color(thumbnail(path)), QColor(Qt::blue));
        QCOMPARE(thumbnail(path).size(), QSize(240, 180));
        writeEntry(path, pngOfLibpng(plain({256, 192}), texts(path)));
        QCOMPARE(color(thumbnail(path)), ofEntry);
        QCOMPARE(color(thumbnail(path, 100)), QColor(Qt::red));
    }

    void aSmallEntryCountsIfThereIsNoMoreOfTheImage()
    {
        const QString path = oldFile(QStringLiteral("small.png"), testImages::blackPng({200, 100}));
        writeEntry(path, pngOfLibpng(plain({200, 100}), texts(path)));
        QCOMPARE(color(thumbnail(path)), ofFile);
        writeEntry(
            path, pngOfLibpng(
                      plain({200, 100}),
                      texts(path, {{"Thumb::Image::Width", "200"}, {"Thumb::Image::Height", "100"}})));
        QCOMPARE(color(thumbnail(path)), ofEntry);
        QCOMPARE(thumbnail(path).size(), QSize(200, 100));
    }

    void whatIsNoEntryOfTheFileIsNotUsed_data()
    {
        QTest::addColumn<QByteArray>("keyword");
        QTest::addColumn<QByteArray>("text");
        QTest::newRow("of another file") << QByteArray("Thumb::URI") << QByteArray("file:///etc/a.png");
        QTest::newRow("without a file") << QByteArray("Thumb::URI") << QByteArray();
        QTest::newRow("of another time") << QByteArray("Thumb::MTime") << QByteArray("1000000000");
        QTest::newRow("without a time") << QByteArray("Thumb::MTime") << QByteArray();
        QTest::newRow("of another size") << QByteArray("Thumb::Size") << QByteArray("17");
        QTest::newRow("of no size") << QByteArray("Thumb::Size") << QByteArray("nonsense");
    }

    void whatIsNoEntryOfTheFileIsNotUsed()
    {
        QFETCH(const QByteArray, keyword);
        QFETCH(const QByteArray, text);
        const QString path = oldFile();
        Texts told = texts(path);
        told.removeIf([&keyword](const auto &pair) { return pair.first == keyword; });
        if (!text.isEmpty()) {
            told.append({keyword, text});
        }
        writeEntry(path, pngOfLibpng(plain({256, 192}), told));
        QCOMPARE(color(thumbnail(path)), ofFile);
        QCOMPARE(color(QImage(entry(path))), ofFile); // and it was replaced
    }

    void withoutASizeAnEntryMustBeClearlyYounger()
    {
        const QString path = oldFile();
        writeEntry(path, pngOfLibpng(plain({256, 192}), texts(path)));
        files::makeOlder(entry(path), 99); // a second after the file
        QCOMPARE(color(thumbnail(path)), ofFile);
    }

    void aChangedFileHasNoThumbnailOfItsOldSelf()
    {
        const QString path = oldFile();
        std::ignore = thumbnail(path);
        testImages::writeFile(path, testImages::encoded(plain({1200, 900}, Qt::blue), "png"));
        files::makeOlder(path, 50);
        QCOMPARE(color(thumbnail(path)), QColor(Qt::blue));
        QCOMPARE(color(QImage(entry(path))), QColor(Qt::blue));
    }

    void unusableEntriesAreReplaced_data()
    {
        QTest::addColumn<QByteArray>("bytes");
        const QString path = oldFile();
        const Texts told = texts(path);
        const QByteArray good = pngOfLibpng(plain({256, 192}), told);
        QTest::newRow("empty") << QByteArray();
        QTest::newRow("text") << QByteArray("no image");
        QTest::newRow("cut off") << good.chopped(20);
        QTest::newRow("without an end") << good.chopped(12);
        QByteArray damaged = good;
        damaged[damaged.size() - 30] = static_cast<char>(damaged.at(damaged.size() - 30) ^ 1);
        QTest::newRow("damaged pixels") << damaged;
        QTest::newRow("too large for its class") << pngOfLibpng(plain({257, 192}), told);
        QTest::newRow("too small for the request") << pngOfLibpng(plain({239, 179}), told);
        QTest::newRow("a JPEG") << testImages::encoded(plain({256, 192}), "jpeg");
        QByteArray chunks;
        for (const auto &[keyword, text] : told) {
            chunks += testImages::pngChunk("tEXt", keyword + '\0' + text);
        }
        QTest::newRow("interlaced") << testImages::png(
            {.size = {1, 1}, .interlaced = true}, QByteArray(4, '\0'), chunks);
        QTest::newRow("enormous by its header")
            << testImages::png({.size = {100'000, 100'000}}, QByteArray(100, '\0'), chunks);
        QTest::newRow("pixels are missing")
            << testImages::png({.size = {256, 192}}, QByteArray(100, '\0'), chunks);
        const auto packed = [](const QByteArray &text) {
            return testImages::pngChunk("zTXt", QByteArray("Thumb::URI\0\0", 12) + text);
        };
        const QByteArray rows(qsizetype{256 * 3 + 1} * 192, '\0');
        QTest::newRow("a text that unpacks to a gigabyte") << testImages::png(
            {.size = {256, 192}}, rows, packed(qCompress(QByteArray(1 << 24, 'a'), 9).sliced(4)));
        QTest::newRow("a packed text that is none")
            << testImages::png({.size = {256, 192}}, rows, packed("nonsense"));
        QTest::newRow("a packed text of nothing") << testImages::png({.size = {256, 192}}, rows, packed({}));
        QTest::newRow("a text without a keyword")
            << testImages::png({.size = {256, 192}}, rows, testImages::pngChunk("tEXt", "Thumb::URI"));
        QTest::newRow("a long text") << testImages::png(
            {.size = {256, 192}}, rows, testImages::pngChunk("tEXt", QByteArray(1 << 20, 'a')));
        QTest::newRow("a large file") << good + QByteArray(17 << 20, '\0');
    }

    void unusableEntriesAreReplaced()
    {
        QFETCH(const QByteArray, bytes);
        const QString path = oldFile();
        writeEntry(path, bytes);
        const QImage made = thumbnail(path);
        QCOMPARE(made.size(), QSize(240, 180));
        QCOMPARE(color(made), ofFile);
        QCOMPARE(QImage(entry(path)).size(), QSize(256, 192));
        QCOMPARE(color(QImage(entry(path))), ofFile);
    }

    void lyingAboutTheImageDistortsNothing_data()
    {
        QTest::addColumn<QByteArray>("width");
        QTest::addColumn<QByteArray>("height");
        QTest::newRow("a line") << QByteArray("1000000") << QByteArray("1");
        QTest::newRow("negative") << QByteArray("-1200") << QByteArray("-900");
        QTest::newRow("zero") << QByteArray("0") << QByteArray("0");
        QTest::newRow("no numbers") << QByteArray("wide") << QByteArray("high");
        QTest::newRow("as stored before it was turned") << QByteArray("900") << QByteArray("1200");
        QTest::newRow("true") << QByteArray("1200") << QByteArray("900");
    }

    void lyingAboutTheImageDistortsNothing()
    {
        QFETCH(const QByteArray, width);
        QFETCH(const QByteArray, height);
        const QString path = oldFile();
        writeEntry(
            path, pngOfLibpng(
                      plain({256, 192}),
                      texts(path, {{"Thumb::Image::Width", width}, {"Thumb::Image::Height", height}})));
        QCOMPARE(thumbnail(path).size(), QSize(240, 180));
        QCOMPARE(color(thumbnail(path)), ofEntry);
    }

    void whatIsNoRegularFileIsNoEntry_data()
    {
        QTest::addColumn<QString>("kind");
        for (const char *const kind : {"pipe", "folder", "link", "link to itself"}) {
            QTest::newRow(kind) << QString::fromLatin1(kind);
        }
    }

    void whatIsNoRegularFileIsNoEntry()
    {
        QFETCH(const QString, kind);
        const QString path = oldFile();
        const QString elsewhere = m_home.path() + QStringLiteral("/elsewhere.png");
        testImages::writeFile(elsewhere, pngOfLibpng(plain({256, 192}), texts(path)));
        files::makeFolder(root() + QStringLiteral("/large"));
        const QString target = entry(path);
        if (kind == QStringLiteral("pipe")) {
            QCOMPARE(::mkfifo(QFile::encodeName(target).constData(), 0600), 0);
        } else if (kind == QStringLiteral("folder")) {
            files::makeFolder(target);
        } else {
            QVERIFY(QFile::link(kind == QStringLiteral("link") ? elsewhere : target, target));
        }
        QCOMPARE(color(thumbnail(path)), ofFile);
        QCOMPARE(color(QImage(elsewhere)), ofEntry); // what a link leads to stays
        if (kind != QStringLiteral("folder")) {
            QVERIFY(S_ISREG(statusOf(target).st_mode));
        }
    }

    void aFileThatCanNotBeReadHasNone()
    {
        const QString path = oldFile();
        writeEntry(path, pngOfLibpng(plain({256, 192}), texts(path)));
        files::remove(path);
        QVERIFY2(thumbnail(path).isNull(), "though there is an entry");
        const QString damaged = oldFile(QStringLiteral("damaged.png"), testImages::hollowPng({1200, 900}));
        QVERIFY(thumbnail(damaged).isNull());
        QVERIFY(!files::exists(entry(damaged)));
        QVERIFY(!files::exists(root() + QStringLiteral("/fail")));
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

    void anyNameIsOneOfItsOwn_data()
    {
        QTest::addColumn<QString>("name");
        QTest::newRow("per cent") << QStringLiteral("100%25 %2F#?.png");
        QTest::newRow("line break") << QStringLiteral("a\nb.png");
        QTest::newRow("quotes") << QStringLiteral("it's \"<b>\" & `x`; {|}.png");
        QTest::newRow("right to left") << QStringLiteral("\u05E9\u05DC\u05D5\u05DD \u202Egnp.png");
        QTest::newRow("emoji") << QStringLiteral("\U0001F4F7.png");
        QTest::newRow("dots") << QStringLiteral("...");
        QTest::newRow("long") << QString(250, u'a') + QStringLiteral(".png");
        QTest::newRow("long and escaped") << QString(80, QChar(0x20AC)) + QStringLiteral(".png");
    }

    void anyNameIsOneOfItsOwn()
    {
        QFETCH(const QString, name);
        const QString path = oldFile(name);
        QCOMPARE(color(thumbnail(path)), ofFile);
        QVERIFY(files::exists(entry(path)));
        QCOMPARE(QImage(entry(path)).text(QStringLiteral("Thumb::URI")).toLatin1(), gioUri(path));
        writeEntry(path, pngOfToolkit(plain({256, 192}), texts(path)));
        QCOMPARE(color(thumbnail(path)), ofEntry);
        QVERIFY(FileManager::defaultManager().trashItem(QUrl::fromLocalFile(path)).has_value());
        QCOMPARE(entryCount(), 0);
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

QTEST_GUILESS_MAIN(SharedThumbnailCacheTest)
#include "SharedThumbnailCacheTest.moc"
