#include "FileManager.h"
#include "SharedThumbnailCacheFixture.h"

#include <png.h>

namespace {

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

/// Which entries a thumbnail is taken from.
class SharedThumbnailCacheReadingTest final : public SharedThumbnailCacheFixture {
    Q_OBJECT

private Q_SLOTS:

    void init() { emptyHome(); }

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
};

QTEST_GUILESS_MAIN(SharedThumbnailCacheReadingTest)
#include "SharedThumbnailCacheReadingTest.moc"
