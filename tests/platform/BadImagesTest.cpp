#include "ImageSource.h"

#include "TemporaryHome.h"
#include "TestImages.h"

#include <QTest>
#include <QUrl>
#include <QtEndian>

#include <sys/resource.h>

using testImages::png;
using testImages::pngChunk;

namespace {

constexpr int maximum = 240;

QImage picture(QSize size, QColor color = Qt::red)
{
    QImage image(size, QImage::Format_RGB32);
    image.fill(color);
    return image;
}

template <typename Number> QByteArray littleEndian(Number number)
{
    QByteArray bytes(sizeof number, Qt::Uninitialized);
    qToLittleEndian(number, bytes.data());
    return bytes;
}

QByteArray riffChunk(const QByteArray &type, const QByteArray &contents)
{
    return type + littleEndian(quint32(contents.size())) + contents + QByteArray(contents.size() % 2, '\0');
}

/// Three bytes, less one, as WebP has its sizes.
QByteArray webpSide(int side)
{
    return littleEndian(quint32(side - 1)).first(3);
}

/// A WebP of the still ones' pixels, one after the other, on a canvas of that size.
QByteArray animatedWebp(QSize canvas, const QList<QImage> &frames)
{
    constexpr char hasAnimation = 0x02;
    QByteArray contents = riffChunk(
                              "VP8X", QByteArray(1, hasAnimation) + QByteArray(3, '\0') +
                                          webpSide(canvas.width()) + webpSide(canvas.height())) +
                          riffChunk("ANIM", QByteArray(6, '\0'));
    for (const QImage &frame : frames) {
        constexpr qsizetype headerSize = 12;
        const QByteArray still = testImages::encoded(frame, "webp").sliced(headerSize);
        contents += riffChunk(
            "ANMF", QByteArray(6, '\0') + webpSide(frame.width()) + webpSide(frame.height()) +
                        QByteArray("\x64\0\0\0", 4) + still);
    }
    return riffChunk("RIFF", "WEBP" + contents);
}

struct TiffPage {
    QSize size = {8, 4};
    char gray = 0x55;
};

/// A TIFF of gray pages, each a directory with a strip of its own; the last one leads to `next`, which is
/// nowhere if it is 0.
QByteArray tiff(const QList<TiffPage> &pages, quint32 next = 0)
{
    constexpr quint16 shortType = 3;
    constexpr quint16 longType = 4;
    QByteArray bytes = QByteArray("II*\0", 4) + littleEndian(quint32(8));
    for (qsizetype index = 0; index < pages.size(); ++index) {
        const auto &[size, gray] = pages.at(index);
        constexpr quint32 stripSize = 32; // of 8 × 4 pixels, whatever the directory says
        constexpr quint16 entryCount = 8;
        const auto directoryEnd = quint32(bytes.size() + 2 + qsizetype{12} * entryCount + 4);
        const auto entry = [&bytes](quint16 tag, quint16 type, quint32 value) {
            bytes += littleEndian(tag) + littleEndian(type) + littleEndian(quint32(1)) + littleEndian(value);
        };
        bytes += littleEndian(entryCount);
        entry(256, longType, quint32(size.width()));
        entry(257, longType, quint32(size.height()));
        entry(258, shortType, 8); // bits
        entry(259, shortType, 1); // not packed
        entry(262, shortType, 1); // black is zero
        entry(273, longType, directoryEnd);
        entry(278, longType, quint32(size.height()));
        entry(279, longType, stripSize);
        const bool isLast = index == pages.size() - 1;
        bytes += littleEndian(isLast ? next : directoryEnd + stripSize) + QByteArray(stripSize, gray);
    }
    return bytes;
}

/// A GIF of one pixel's data on a canvas of that size.
QByteArray gif(quint16 width, quint16 height)
{
    return QByteArray("GIF89a") + littleEndian(width) + littleEndian(height) +
           QByteArray::fromHex("800000ff00000000ff2c") + QByteArray(4, '\0') + littleEndian(width) +
           littleEndian(height) + QByteArray::fromHex("0002024401003b");
}

/// The header of a BMP of 24 bits per pixel, and no pixels.
QByteArray hollowBmp(qint32 width, qint32 height)
{
    const QByteArray info = littleEndian(quint32(40)) + littleEndian(width) + littleEndian(height) +
                            littleEndian(quint16(1)) + littleEndian(quint16(24)) + QByteArray(24, '\0');
    return "BM" + littleEndian(quint32(54)) + QByteArray(4, '\0') + littleEndian(quint32(54)) + info;
}

/// `jpeg` with another size in its frame header.
QByteArray resizedJpeg(QByteArray jpeg, quint16 width, quint16 height)
{
    const qsizetype frame = jpeg.indexOf("\xff\xc0");
    qToBigEndian(height, jpeg.data() + frame + 5);
    qToBigEndian(width, jpeg.data() + frame + 7);
    return jpeg;
}

/// Cyan, magenta, yellow and black, as programs for print write it: 16 × 8 pixels of a dark red.
QByteArray cmykJpeg()
{
    return QByteArray::fromBase64(
        "/9j/7gAOQWRvYmUAZAAAAAAC/9sAQwADAgIDAgIDAwMDBAMDBAUIBQUEBAUKBwcGCAwKDAwLCgsLDQ4SEA0OEQ4LCxAWEBET"
        "FBUVFQwPFxgWFBgSFBUU/9sAQwEDBAQFBAUJBQUJFA0LDRQUFBQUFBQUFBQUFBQUFBQUFBQUFBQUFBQUFBQUFBQUFBQUFBQU"
        "FBQUFBQUFBQUFBQU/8AAFAgACAAQBAERAAIRAQMRAQQRAP/EABYAAQEBAAAAAAAAAAAAAAAAAAAGCP/EABQQAQAAAAAAAAAA"
        "AAAAAAAAAAD/xAAWAQEBAQAAAAAAAAAAAAAAAAAABgn/xAAUEQEAAAAAAAAAAAAAAAAAAAAA/9oADgQBAAIRAxEEAAA/ALVW"
        "s52wAB//2Q==");
}

/// One scan of the first coefficients of each block, of one bit each.
QByteArray jpegScan(QSize size)
{
    constexpr int blockSide = 8;
    constexpr int components = 4;
    const qsizetype blocks =
        qsizetype((size.width() + blockSide - 1) / blockSide) * ((size.height() + blockSide - 1) / blockSide);
    return QByteArray::fromHex("ffda000e04 0100 0200 0300 0400 000000") +
           QByteArray(blocks * components / 8 + 1, '\0');
}

/// A progressive JPEG of four colours, in their full size, which is all the same colour.
QByteArray progressiveJpeg(QSize size, int scanCount = 1)
{
    QByteArray sides(4, Qt::Uninitialized);
    qToBigEndian(quint16(size.height()), sides.data());
    qToBigEndian(quint16(size.width()), sides.data() + 2);
    const QByteArray quantization = QByteArray::fromHex("ffdb004300") + QByteArray(64, '\1');
    const QByteArray frame =
        QByteArray::fromHex("ffc2001408") + sides + QByteArray::fromHex("04 011100 021100 031100 041100");
    // The only code is a zero bit for no difference from the block before.
    const QByteArray huffman = QByteArray::fromHex("ffc4001400 01") + QByteArray(15, '\0') + '\0';
    return QByteArray::fromHex("ffd8") + quantization + frame + huffman + jpegScan(size).repeated(scanCount) +
           QByteArray::fromHex("ffd9");
}

} // namespace

/// Images as an accident or a stranger leaves them: each has a thumbnail of its true pixels or none, soon and
/// in bounded memory.
class BadImagesTest : public QObject {
    Q_OBJECT

private:
    [[nodiscard]] std::optional<QImage> thumbnail(const QByteArray &bytes) const
    {
        const QString path = m_home.desktop() + QStringLiteral("/image.png");
        testImages::writeFile(path, bytes);
        const auto source = ImageSource::create(QUrl::fromLocalFile(path));
        return source ? source->thumbnail(maximum) : std::nullopt;
    }

    TemporaryHome m_home;

private Q_SLOTS:

    void aPngThatEndsBetweenTwoChunksIsNone()
    {
        const QByteArray whole =
            png({.size = {2, 1}, .colorType = 3}, QByteArray::fromHex("000001"),
                pngChunk("gAMA", QByteArray(4, '\1')) + pngChunk("PLTE", QByteArray(6, '\7')) +
                    pngChunk("tRNS", QByteArray(2, '\7')) + pngChunk("tEXt", QByteArray("Title\0a", 7)));
        QVERIFY(thumbnail(whole).has_value());
        int boundaries = 0;
        for (qsizetype end = 8; end < whole.size(); ++boundaries) {
            QVERIFY2(!thumbnail(whole.first(end)).has_value(), qPrintable(QString::number(end)));
            end += 12 + qFromBigEndian<quint32>(whole.constData() + end);
        }
        QCOMPARE(boundaries, 7);
    }

    void whatClaimsAnImpossibleSizeIsNone_data()
    {
        QTest::addColumn<QByteArray>("bytes");
        for (const QSize size : {QSize(0, 10), QSize(10, 0), QSize(0, 0), QSize(100'000, 100'000)}) {
            const QByteArray name =
                QByteArray::number(size.width()) + " x " + QByteArray::number(size.height());
            for (const bool interlaced : {false, true}) {
                QTest::addRow("PNG %s, %s", name.constData(), interlaced ? "interlaced" : "plain")
                    << png({.size = size, .interlaced = interlaced}, QByteArray(100, '\0'));
            }
            QTest::addRow("BMP %s", name.constData()) << hollowBmp(size.width(), size.height());
            QTest::addRow("TIFF %s", name.constData()) << tiff({{.size = size}});
        }
        QTest::newRow("PNG of the highest numbers")
            << png({.size = {2147483647, 2147483647}}, QByteArray(100, '\0'));
        QTest::newRow("BMP of the lowest numbers") << hollowBmp(-2147483647 - 1, -2147483647 - 1);
        QTest::newRow("GIF of nothing") << gif(0, 0);
        QTest::newRow("GIF of the highest numbers") << gif(65535, 65535);
        const QByteArray jpeg = testImages::encoded(picture({16, 16}), "jpeg");
        QTest::newRow("JPEG of nothing") << resizedJpeg(jpeg, 0, 0);
        QTest::newRow("JPEG of the highest numbers") << resizedJpeg(jpeg, 65500, 65500);
        QTest::newRow("WebP of the highest numbers") << animatedWebp({1 << 24, 1 << 24}, {picture({4, 4})});
    }

    void whatClaimsAnImpossibleSizeIsNone()
    {
        QFETCH(const QByteArray, bytes);
        QVERIFY(!thumbnail(bytes).has_value());
    }

    void halfAGibibyteIsEnough_data()
    {
        QTest::addColumn<QByteArray>("bytes");
        QTest::addColumn<bool>("isShown");
        QTest::newRow("a bomb of many rows") << testImages::blackPng({16000, 16000}) << true;
        QTest::newRow("as large as is decoded whole") << testImages::interlacedBlackPng({7000, 7000}) << true;
        QTest::newRow("larger") << testImages::interlacedBlackPng({7200, 7200}) << false;
        QTest::newRow("as large in grey") << testImages::interlacedBlackPng({7000, 7000}, 1) << true;
        QTest::newRow("larger in grey") << testImages::interlacedBlackPng({7200, 7200}, 1) << false;
        QTest::newRow("a large animation") << animatedWebp({7000, 7000}, {picture({64, 64})}) << true;
        QTest::newRow("a larger one") << animatedWebp({7200, 7200}, {picture({64, 64})}) << false;
        QTest::newRow("a progressive photo for print") << progressiveJpeg({8192, 6144}) << true;
        QTest::newRow("one with another row") << progressiveJpeg({8192, 6145}) << false;
    }

    void halfAGibibyteIsEnough()
    {
        QFETCH(const QByteArray, bytes);
        // So that the process's peak starts anew (proc(5)).
        testImages::writeFile(QStringLiteral("/proc/self/clear_refs"), "5");
        rusage before = {};
        rusage after = {};
        QCOMPARE(::getrusage(RUSAGE_SELF, &before), 0);
        const auto made = thumbnail(bytes);
        QCOMPARE(::getrusage(RUSAGE_SELF, &after), 0);
        QTEST(made.has_value(), "isShown");
        const auto grown = after.ru_maxrss - before.ru_maxrss; // KiB
        QVERIFY2(grown < qint64{512} * 1024, qPrintable(QString::number(grown)));
    }

    void aJpegOfTooManyScansIsNone()
    {
        QVERIFY(thumbnail(progressiveJpeg({16, 16}, 100)).has_value());
        QVERIFY(!thumbnail(progressiveJpeg({16, 16}, 101)).has_value());
    }

    void aPngWithoutAPaletteIsNone()
    {
        const QByteArray rows = QByteArray::fromHex("000000");
        QVERIFY(!thumbnail(png({.size = {2, 1}, .colorType = 3}, rows)).has_value());
        QVERIFY(!thumbnail(png({.size = {2, 1}, .colorType = 3}, rows, pngChunk("PLTE", {}))).has_value());
        QVERIFY(!thumbnail(png({.size = {2, 1}, .colorType = 3, .interlaced = true}, rows)).has_value());
    }

    void anInterlacedOneOf16BitsIsShown()
    {
        const auto made = thumbnail(
            png({.size = {1, 1}, .bitDepth = 16, .interlaced = true}, QByteArray::fromHex("00ffff80000000")));
        QVERIFY(made.has_value());
        QCOMPARE(made->pixelColor(0, 0), QColor(255, 128, 0));
    }

    void aPhotoForPrintIsShownInItsColors()
    {
        const auto made = thumbnail(cmykJpeg());
        QVERIFY(made.has_value());
        QCOMPARE(made->size(), QSize(16, 8));
        const QColor color = made->pixelColor(8, 4);
        QVERIFY2(color.red() > 150 && color.green() < 90 && color.blue() < 120, qPrintable(color.name()));
    }

    void anAnimationShowsItsFirstFrame()
    {
        const auto webp =
            thumbnail(animatedWebp({16, 16}, {picture({16, 16}, Qt::red), picture({16, 16}, Qt::blue)}));
        QVERIFY(webp.has_value());
        QVERIFY2(webp->pixelColor(8, 8).red() > 200, qPrintable(webp->pixelColor(8, 8).name()));
        // Two frames of 2 × 2 pixels: the first red, the second blue.
        const auto gif = thumbnail(QByteArray::fromHex("47494638396102000200800000ff00000000ff"
                                                       "2c00000000020002000002028451"
                                                       "002c0000000002000200000202"
                                                       "8c53003b"));
        QVERIFY(gif.has_value());
        QCOMPARE(gif->pixelColor(0, 0), QColor(Qt::red));
    }

    void anAnimationWithADamagedEndShowsNothingWrong()
    {
        QByteArray webp = animatedWebp({16, 16}, {picture({16, 16})});
        webp.chop(10);
        QVERIFY(!thumbnail(webp).has_value());
        QVERIFY2(!thumbnail(animatedWebp({16, 16}, {})).has_value(), "no frame");
    }

    void ofManyPagesTheFirstIsShown()
    {
        QList<TiffPage> pages(5000);
        pages.first().gray = '\x80';
        const auto made = thumbnail(tiff(pages));
        QVERIFY(made.has_value());
        QCOMPARE(made->size(), QSize(8, 4));
        QCOMPARE(made->pixelColor(4, 2), QColor(0x80, 0x80, 0x80));
    }

    void pagesThatGoRoundInACircleAreShown()
    {
        const auto made = thumbnail(tiff({TiffPage{}, TiffPage{}}, 8));
        QVERIFY(made.has_value());
        QCOMPARE(made->size(), QSize(8, 4));
    }
};

QTEST_GUILESS_MAIN(BadImagesTest)
#include "BadImagesTest.moc"
