#include "pngThumbnail.h"

#include "FileDescriptor.h"
#include "TemporaryHome.h"
#include "TestImages.h"

#include <QColor>
#include <QFile>
#include <QTest>

#include <fcntl.h>
#include <sys/resource.h>

#include <algorithm>
#include <cstdlib>

using testImages::png;
using testImages::pngChunk;

namespace {

constexpr int noLimit = 100'000;

/// Slopes and stripes, different in each channel; opaque at the left and transparent at the right.
QImage picture(QSize size)
{
    QImage image(size, QImage::Format_ARGB32);
    for (int y = 0; y < size.height(); ++y) {
        for (int x = 0; x < size.width(); ++x) {
            image.setPixel(
                x, y,
                qRgba(
                    x * 255 / size.width(), y * 255 / size.height(), (x / 40 + y / 30) % 2 * 255,
                    255 - x * 255 / size.width()));
        }
    }
    return image;
}

/// The image's memory as PNG rows without a filter.
QByteArray unfilteredRows(const QImage &image)
{
    QByteArray rows;
    for (int y = 0; y < image.height(); ++y) {
        rows += '\0' + QByteArray(
                           reinterpret_cast<const char *>(image.constScanLine(y)),
                           (qsizetype(image.width()) * image.depth() + 7) / 8);
    }
    return rows;
}

QByteArray rgbPng(const QImage &image)
{
    return png({.size = image.size()}, unfilteredRows(image.convertToFormat(QImage::Format_RGB888)));
}

QByteArray rgbaPng(const QImage &image)
{
    return png(
        {.size = image.size(), .colorType = 6},
        unfilteredRows(image.convertToFormat(QImage::Format_RGBA8888)));
}

/// 16 bits per channel, highest byte first, whose lower bytes are noise that doesn't reach 8 bits.
QByteArray deepPng(const QImage &image)
{
    QByteArray rows;
    for (int y = 0; y < image.height(); ++y) {
        rows += '\0';
        for (int x = 0; x < image.width(); ++x) {
            const QRgb pixel = image.pixel(x, y);
            for (const int value : {qRed(pixel), qGreen(pixel), qBlue(pixel), qAlpha(pixel)}) {
                rows += static_cast<char>(value);
                rows += static_cast<char>(value / 2 + 64);
            }
        }
    }
    return png({.size = image.size(), .bitDepth = 16, .colorType = 6}, rows);
}

QByteArray palettePng(const QImage &indexed)
{
    QByteArray colors;
    QByteArray alphas;
    for (const QRgb color : indexed.colorTable()) {
        colors += static_cast<char>(qRed(color));
        colors += static_cast<char>(qGreen(color));
        colors += static_cast<char>(qBlue(color));
        alphas += static_cast<char>(qAlpha(color));
    }
    return png(
        {.size = indexed.size(), .colorType = 3}, unfilteredRows(indexed),
        pngChunk("PLTE", colors) + pngChunk("tRNS", alphas));
}

QImage indexedPicture(QSize size)
{
    QImage image(size, QImage::Format_Indexed8);
    for (int index = 0; index < 256; ++index) {
        image.setColor(index, qRgba(index, 255 - index, index / 2, index));
    }
    for (int y = 0; y < size.height(); ++y) {
        for (int x = 0; x < size.width(); ++x) {
            image.setPixel(x, y, static_cast<uint>((x + y) / 3 % 256));
        }
    }
    return image;
}

/// The furthest that any channel of any pixel is from its like, both images premultiplied.
int furthest(const QImage &one, const QImage &other)
{
    const QImage a = one.convertToFormat(QImage::Format_ARGB32_Premultiplied);
    const QImage b = other.convertToFormat(QImage::Format_ARGB32_Premultiplied);
    int distance = a.size() == b.size() ? 0 : 256;
    for (int y = 0; distance < 256 && y < a.height(); ++y) {
        const uchar *const rowA = a.constScanLine(y);
        const uchar *const rowB = b.constScanLine(y);
        for (qsizetype byte = 0; byte < a.bytesPerLine(); ++byte) {
            distance = std::max(distance, std::abs(rowA[byte] - rowB[byte]));
        }
    }
    return distance;
}

} // namespace

/// Makes its files byte by byte: the toolkit's writers would load what the reader under test must not.
class pngThumbnailTest : public QObject {
    Q_OBJECT

private:
    [[nodiscard]] std::optional<QImage> thumbnail(const QByteArray &bytes, int maximum = noLimit) const
    {
        const QString path = m_home.desktop() + QStringLiteral("/image.png");
        testImages::writeFile(path, bytes);
        const FileDescriptor file(::open(QFile::encodeName(path).constData(), O_RDONLY | O_CLOEXEC));
        return pngThumbnail(file.get(), maximum);
    }

    TemporaryHome m_home;

private Q_SLOTS:

    void pixelsStayWhatTheyAreWithoutScaling_data()
    {
        QTest::addColumn<QByteArray>("bytes");
        QTest::addColumn<QImage>("expected");
        const QImage image = picture({255, 100});
        const QImage opaque = image.convertToFormat(QImage::Format_RGB888);
        const QImage gray = opaque.convertToFormat(QImage::Format_Grayscale8);
        const QImage indexed = indexedPicture({130, 70});
        QTest::newRow("red, green, blue") << rgbPng(image) << opaque;
        QTest::newRow("with alpha") << rgbaPng(image) << image;
        QTest::newRow("16 bits") << deepPng(image) << image;
        QTest::newRow("palette with transparency") << palettePng(indexed) << indexed;
        QTest::newRow("gray") << png({.size = gray.size(), .colorType = 0}, unfilteredRows(gray)) << gray;
        QImage white(9, 1, QImage::Format_RGB32);
        white.fill(Qt::white);
        white.setPixel(1, 0, qRgb(0, 0, 0));
        const QByteArray bits = QByteArray::fromHex("00bf80");
        QTest::newRow("one bit") << png({.size = {9, 1}, .bitDepth = 1, .colorType = 0}, bits) << white;
        QImage hole = white.convertToFormat(QImage::Format_ARGB32);
        hole.setPixel(1, 0, qRgba(0, 0, 0, 0));
        QTest::newRow("gray with one transparent")
            << png({.size = {9, 1}, .bitDepth = 1, .colorType = 0}, bits, pngChunk("tRNS", {2, '\0'}))
            << hole;
        QImage half(1, 1, QImage::Format_ARGB32);
        half.fill(qRgba(200, 200, 200, 100));
        QTest::newRow("gray with alpha")
            << png({.size = {1, 1}, .colorType = 4}, QByteArray::fromHex("00c864")) << half;
    }

    void pixelsStayWhatTheyAreWithoutScaling()
    {
        QFETCH(const QByteArray, bytes);
        QFETCH(const QImage, expected);
        const auto made = thumbnail(bytes);
        QVERIFY(made.has_value());
        QCOMPARE(
            made->format(),
            expected.hasAlphaChannel() ? QImage::Format_ARGB32_Premultiplied : QImage::Format_RGB32);
        QCOMPARE(furthest(*made, expected), 0);
    }

    void aSmallerOneIsLikeTheToolkits_data()
    {
        QTest::addColumn<QByteArray>("bytes");
        QTest::addColumn<QImage>("full");
        QTest::addColumn<QSize>("size");
        const QImage large = picture({1920, 1080});
        const QImage opaque = large.convertToFormat(QImage::Format_RGB888);
        const QImage gray = opaque.convertToFormat(QImage::Format_Grayscale8);
        const QImage indexed = indexedPicture({1201, 907});
        QTest::newRow("a third") << rgbPng(large) << opaque << QSize(640, 360);
        QTest::newRow("an odd part") << rgbPng(large) << opaque << QSize(601, 338);
        QTest::newRow("nearly all") << rgbPng(large) << opaque << QSize(1919, 1079);
        QTest::newRow("an icon") << rgbPng(large) << opaque << QSize(16, 9);
        QTest::newRow("with alpha") << rgbaPng(large) << large << QSize(600, 337);
        QTest::newRow("16 bits") << deepPng(large) << large << QSize(600, 337);
        QTest::newRow("palette with transparency") << palettePng(indexed) << indexed << QSize(600, 453);
        QTest::newRow("gray") << png({.size = gray.size(), .colorType = 0}, unfilteredRows(gray)) << gray
                              << QSize(600, 337);
    }

    void aSmallerOneIsLikeTheToolkits()
    {
        QFETCH(const QByteArray, bytes);
        QFETCH(const QImage, full);
        QFETCH(const QSize, size);
        const auto made = thumbnail(bytes, size.width());
        QVERIFY(made.has_value());
        QCOMPARE(made->size(), size);
        const QImage expected = full.convertToFormat(QImage::Format_ARGB32_Premultiplied)
                                    .scaled(size, Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
        const int distance = furthest(*made, expected);
        QVERIFY2(distance <= 4, qPrintable(QString::number(distance)));
    }

    void everyPixelCountsByItsArea()
    {
        // Three pixels for two: each takes one and half of the middle one.
        const auto made =
            thumbnail(png({.size = {3, 1}, .colorType = 0}, QByteArray::fromHex("0000ff60")), 2);
        QVERIFY(made.has_value());
        QCOMPARE(made->size(), QSize(2, 1));
        QCOMPARE(qRed(made->pixel(0, 0)), 85); // (0 + 255 / 2) / 1.5
        QCOMPARE(qRed(made->pixel(1, 0)), qRound((255 / 2.0 + 96) / 1.5));
    }

    void transparentPixelsLendNoColor()
    {
        const auto made =
            thumbnail(png({.size = {2, 1}, .colorType = 6}, QByteArray::fromHex("00ff0000ff00ff0000")), 1);
        QVERIFY(made.has_value());
        QCOMPARE(made->pixel(0, 0), qRgba(128, 0, 0, 128)); // premultiplied
    }

    void extremeShapesAreFitted_data()
    {
        QTest::addColumn<QSize>("size");
        QTest::addColumn<QSize>("expected");
        QTest::newRow("a row") << QSize(10000, 1) << QSize(600, 1);
        QTest::newRow("a column") << QSize(1, 10000) << QSize(1, 600);
        QTest::newRow("the longest row") << QSize(1000000, 2) << QSize(600, 1);
        QTest::newRow("the longest column") << QSize(2, 1000000) << QSize(1, 600);
        QTest::newRow("one pixel") << QSize(1, 1) << QSize(1, 1);
    }

    void extremeShapesAreFitted()
    {
        QFETCH(const QSize, size);
        QImage white(size, QImage::Format_RGB888);
        white.fill(Qt::white);
        const auto made = thumbnail(rgbPng(white), 600);
        QVERIFY(made.has_value());
        QTEST(made->size(), "expected");
        QImage expected(made->size(), QImage::Format_RGB32);
        expected.fill(Qt::white);
        QCOMPARE(*made, expected);
    }

    void aVeryLargeImageTakesLittleMemory()
    {
        const QByteArray bytes = testImages::blackPng({8000, 6000});
        // So that the process's peak starts anew (proc(5)).
        testImages::writeFile(QStringLiteral("/proc/self/clear_refs"), "5");
        rusage before = {};
        rusage after = {};
        QCOMPARE(::getrusage(RUSAGE_SELF, &before), 0);
        const auto made = thumbnail(bytes, 600);
        QCOMPARE(::getrusage(RUSAGE_SELF, &after), 0);
        QVERIFY(made.has_value());
        QCOMPARE(made->size(), QSize(600, 450));
        QCOMPARE(made->pixel(599, 449), qRgb(0, 0, 0));
        const auto grown = after.ru_maxrss - before.ru_maxrss; // KiB
        QVERIFY2(grown < 8192, qPrintable(QString::number(grown)));
    }

    void whatIsTooLargeIsRefused()
    {
        QVERIFY(!thumbnail(testImages::hollowPng({100'000, 100'000}), 600).has_value());
        QVERIFY(!thumbnail(testImages::blackPng({1'000'001, 1}), 600).has_value());
    }

    void anUnfinishedFileIsNone()
    {
        const QByteArray bytes = rgbPng(picture({60, 40}));
        QVERIFY(thumbnail(bytes).has_value());
        for (qsizetype length = 0; length < bytes.size(); length += length < 60 ? 1 : 97) {
            QVERIFY2(!thumbnail(bytes.left(length)).has_value(), qPrintable(QString::number(length)));
        }
    }

    void aDamagedFileIsNone()
    {
        const QByteArray bytes = rgbaPng(picture({60, 40}));
        // From the header's length on: every byte of a critical chunk is under a checksum.
        for (qsizetype position = 8; position < bytes.size(); position += position < 60 ? 1 : 97) {
            QByteArray damaged = bytes;
            damaged[position] = static_cast<char>(damaged[position] ^ 0x24);
            QVERIFY2(!thumbnail(damaged).has_value(), qPrintable(QString::number(position)));
        }
        QVERIFY(!thumbnail("no PNG at all, but long enough to look for a header in it").has_value());
        QVERIFY2(
            !thumbnail(png({.size = {20, 20}}, QByteArray(100, '\0'))).has_value(), "pixels are missing");
        QVERIFY2(
            !thumbnail(png({.size = {2, 2}, .colorType = 3}, QByteArray(6, '\0'))).has_value(), "no palette");
    }

    void whatIsBesideThePixelsDoesNotMatter()
    {
        const QByteArray text = qCompress(QByteArray(50'000'000, 'a')).sliced(4);
        const QByteArray chunks = pngChunk("gAMA", QByteArray::fromHex("00001000")) +
                                  pngChunk("zTXt", QByteArray("Comment\0\0", 9) + text) +
                                  pngChunk("eXIf", "nonsense") + pngChunk("abCd", "private");
        const auto made = thumbnail(png({.size = {1, 1}}, QByteArray::fromHex("00c86432"), chunks));
        QVERIFY(made.has_value());
        QCOMPARE(made->pixel(0, 0), qRgb(200, 100, 50));
    }

    void anInterlacedOneIsToldApart()
    {
        const QString path = m_home.desktop() + QStringLiteral("/interlaced.png");
        testImages::writeFile(
            path, png({.size = {1, 1}, .interlaced = true}, QByteArray::fromHex("00c86432")));
        const FileDescriptor interlaced(::open(QFile::encodeName(path).constData(), O_RDONLY | O_CLOEXEC));
        QVERIFY(isInterlacedPng(interlaced.get()));
        QVERIFY(!pngThumbnail(interlaced.get(), 600).has_value());
        testImages::writeFile(path, testImages::blackPng({1, 1}));
        const FileDescriptor plain(::open(QFile::encodeName(path).constData(), O_RDONLY | O_CLOEXEC));
        QVERIFY(!isInterlacedPng(plain.get()));
    }

    void noPluginOfTheToolkitIsLoaded()
    {
        QVERIFY(thumbnail(testImages::blackPng({1000, 1000}), 600).has_value());
        QFile maps(QStringLiteral("/proc/self/maps"));
        QVERIFY(maps.open(QIODevice::ReadOnly));
        const QByteArray loaded = maps.readAll();
        QVERIFY2(loaded.contains("/libpng16"), "this is the list of what is loaded");
        QVERIFY(!loaded.contains("/imageformats/"));
    }
};

QTEST_GUILESS_MAIN(pngThumbnailTest)
#include "pngThumbnailTest.moc"
