#include "ImageSource.h"

#include "TemporaryHome.h"
#include "TestImages.h"

#include <QFile>
#include <QTest>
#include <QUrl>

#include <sys/stat.h>

namespace {

constexpr int maximum = 600;

/// Red above, blue below, with enough detail that half of its file isn't all of its picture.
QImage twoHalves(QSize size)
{
    QImage image(size, QImage::Format_RGB32);
    for (int y = 0; y < size.height(); ++y) {
        for (int x = 0; x < size.width(); ++x) {
            const int noise = (x * 7919 + y * 104729) % 40;
            image.setPixel(
                x, y,
                y < size.height() / 2 ? qRgb(215 + noise, noise, noise) : qRgb(noise, noise, 215 + noise));
        }
    }
    return image;
}

bool isReddish(QColor color)
{
    return color.red() > 180 && color.blue() < 80;
}

bool isBluish(QColor color)
{
    return color.blue() > 180 && color.red() < 80;
}

} // namespace

class ImageSourceTest : public QObject {
    Q_OBJECT

private:
    [[nodiscard]] std::optional<QImage> thumbnail(const QByteArray &bytes) const
    {
        return thumbnailOfFile(QStringLiteral("image.png"), bytes);
    }

    [[nodiscard]] std::optional<QImage> thumbnailOfFile(const QString &name, const QByteArray &bytes) const
    {
        const QString path = m_home.desktop() + u'/' + name;
        testImages::writeFile(path, bytes);
        const auto source = ImageSource::create(QUrl::fromLocalFile(path));
        return source ? source->thumbnail(maximum) : std::nullopt;
    }

    TemporaryHome m_home;

private Q_SLOTS:

    void theLongerSideIsAtMostTheMaximum_data()
    {
        QTest::addColumn<QSize>("size");
        QTest::addColumn<QSize>("expected");
        QTest::newRow("landscape") << QSize(1200, 900) << QSize(600, 450);
        QTest::newRow("portrait") << QSize(900, 1200) << QSize(450, 600);
        QTest::newRow("a pixel too wide") << QSize(601, 601) << QSize(600, 600);
        QTest::newRow("just right") << QSize(600, 20) << QSize(600, 20);
        QTest::newRow("never up") << QSize(30, 20) << QSize(30, 20);
        QTest::newRow("a line") << QSize(5000, 1) << QSize(600, 1);
        QTest::newRow("one pixel") << QSize(1, 1) << QSize(1, 1);
    }

    void theLongerSideIsAtMostTheMaximum()
    {
        QFETCH(const QSize, size);
        QFETCH(const QSize, expected);
        QImage image(size, QImage::Format_RGB32);
        image.fill(QColor(200, 30, 60));
        for (const char *const format : {"png", "jpeg", "webp", "bmp", "tiff"}) {
            const auto made = thumbnail(testImages::encoded(image, format));
            QVERIFY2(made.has_value(), format);
            QCOMPARE(made->size(), expected);
            QVERIFY2(qAbs(qRed(made->pixel(0, 0)) - 200) < 12, format);
        }
    }

    void aVeryLargeScreenshotIsShown()
    {
        const auto made = thumbnail(testImages::blackPng({16000, 12000}));
        QVERIFY(made.has_value());
        QCOMPARE(made->size(), QSize(600, 450));
        QCOMPARE(made->pixelColor(599, 449), QColor(Qt::black));
    }

    void anInterlacedOneIsShown()
    {
        // Of 2 × 2 pixels the passes hold the first; the one beside it; the two below.
        const auto made = thumbnail(testImages::png(
            {.size = {2, 2}, .interlaced = true}, QByteArray::fromHex("00ff0000"
                                                                      "0000ff00"
                                                                      "000000ffffffff")));
        QVERIFY(made.has_value());
        QCOMPARE(made->pixelColor(0, 0), QColor(Qt::red));
        QCOMPARE(made->pixelColor(1, 0), QColor(Qt::green));
        QCOMPARE(made->pixelColor(0, 1), QColor(Qt::blue));
        QCOMPARE(made->pixelColor(1, 1), QColor(Qt::white));
    }

    void moreThanThatIsRefused() { QVERIFY(!thumbnail(testImages::hollowPng({100000, 100000})).has_value()); }

    void anImageWithoutItsPixelsIsNone()
    {
        QVERIFY(!thumbnail(testImages::hollowPng({1000, 1000})).has_value());
    }

    void aRotatedPhotoIsUpright_data()
    {
        QTest::addColumn<int>("orientation");
        QTest::addColumn<QSize>("size");
        QTest::addColumn<QPoint>("red");
        QTest::addColumn<QPoint>("blue");
        QTest::newRow("as stored") << 1 << QSize(600, 400) << QPoint(300, 20) << QPoint(300, 380);
        QTest::newRow("upside down") << 3 << QSize(600, 400) << QPoint(300, 380) << QPoint(300, 20);
        QTest::newRow("turned right") << 6 << QSize(400, 600) << QPoint(380, 300) << QPoint(20, 300);
        QTest::newRow("turned left") << 8 << QSize(400, 600) << QPoint(20, 300) << QPoint(380, 300);
    }

    void aRotatedPhotoIsUpright()
    {
        QFETCH(const int, orientation);
        QImage green(60, 40, QImage::Format_RGB32);
        green.fill(Qt::green);
        const QByteArray photo = testImages::withExif(
            testImages::encoded(twoHalves({1500, 1000}), "jpeg"), orientation,
            testImages::encoded(green, "jpeg"));
        const auto made = thumbnail(photo);
        QVERIFY(made.has_value());
        QTEST(made->size(), "size");
        QFETCH(const QPoint, red);
        QVERIFY(isReddish(made->pixelColor(red)));
        QFETCH(const QPoint, blue);
        QVERIFY(isBluish(made->pixelColor(blue)));
    }

    void anUnfinishedFileIsNone_data()
    {
        QTest::addColumn<QByteArray>("bytes");
        const QImage image = twoHalves({900, 700});
        for (const char *const format : {"png", "jpeg", "webp", "bmp", "tiff"}) {
            QTest::newRow(format) << testImages::encoded(image, format);
        }
        QTest::newRow("photo with an embedded thumbnail") << testImages::withExif(
            testImages::encoded(image, "jpeg"), 1, testImages::encoded(image.scaled(50, 40), "jpeg"));
        // 2 × 2 pixels, two animation frames.
        QTest::newRow("gif") << QByteArray::fromHex(
            "47494638396102000200800000ff00000000ff21f90400000000002c00000000020002000002028451003b");
    }

    void anUnfinishedFileIsNone()
    {
        QFETCH(const QByteArray, bytes);
        QVERIFY2(thumbnail(bytes).has_value(), "the whole file is an image");
        for (const qsizetype length : {bytes.size() / 4, bytes.size() / 2, bytes.size() - 6}) {
            QVERIFY2(!thumbnail(bytes.left(length)).has_value(), qPrintable(QString::number(length)));
        }
    }

    void whatFollowsAFinishedPhotoDoesNotMatter()
    {
        const QByteArray photo = testImages::encoded(twoHalves({300, 200}), "jpeg");
        QVERIFY(thumbnail(photo + QByteArray(1000, '\xff')).has_value());
    }

    void transparencyStays()
    {
        QImage image(1000, 1000, QImage::Format_ARGB32);
        image.fill(QColor(255, 0, 0, 100));
        const auto made = thumbnail(testImages::encoded(image, "png"));
        QVERIFY(made.has_value());
        QCOMPARE(made->pixelColor(300, 300).alpha(), 100);
    }

    void aDoubleResolutionNameChangesNothing()
    {
        const auto made = thumbnailOfFile(QStringLiteral("shot@2x.png"), testImages::blackPng({100, 80}));
        QVERIFY(made.has_value());
        QCOMPARE(made->size(), QSize(100, 80));
        QCOMPARE(made->devicePixelRatio(), 1.0);
    }

    void whatIsNoImageHasNoSource()
    {
        const QString folder = m_home.desktop();
        testImages::writeFile(folder + QStringLiteral("/text.png"), "text");
        QCOMPARE(::mkfifo(QFile::encodeName(folder + QStringLiteral("/pipe.png")).constData(), 0600), 0);
        for (const QString &name :
             {QStringLiteral("/text.png"), QStringLiteral("/pipe.png"), QStringLiteral("/none.png"),
              QString()}) {
            QVERIFY2(!ImageSource::create(QUrl::fromLocalFile(folder + name)).has_value(), qPrintable(name));
        }
        QVERIFY(!ImageSource::create(QUrl(QStringLiteral("https://example.org/a.png"))).has_value());
    }

    void aSourceCanBeAskedTwice()
    {
        const QString path = m_home.desktop() + QStringLiteral("/twice.png");
        testImages::writeFile(path, testImages::blackPng({1000, 500}));
        const auto source = ImageSource::create(QUrl::fromLocalFile(path));
        QVERIFY(source.has_value());
        QVERIFY(QFile::remove(path));
        QCOMPARE(source->thumbnail(100).value_or(QImage()).size(), QSize(100, 50));
        QCOMPARE(source->thumbnail(10).value_or(QImage()).size(), QSize(10, 5));
    }
};

QTEST_GUILESS_MAIN(ImageSourceTest)
#include "ImageSourceTest.moc"
