#include "Image.h"

#include "TemporaryHome.h"
#include "TestImages.h"

#include <QFile>
#include <QImage>
#include <QTest>
#include <QUrl>

#include <sys/stat.h>

class ImageTest : public QObject {
    Q_OBJECT

private:
    [[nodiscard]] QString path(const QString &name) const { return m_home.desktop() + u'/' + name; }

    TemporaryHome m_home;

private Q_SLOTS:

    void anImageIsItsBytes()
    {
        const QByteArray bytes = testImages::blackPng({40, 30});
        const QString name = path(QStringLiteral("line\nbreak <b>&amp; \u202e.png"));
        testImages::writeFile(name, bytes);
        const Result<Image> image = Image::contentsOf(QUrl::fromLocalFile(name));
        QVERIFY(image.has_value());
        QCOMPARE(image->bytes, bytes);
        QVERIFY(image->format == ImageFormat::Png);
        QCOMPARE(image->pixelSize, QSize(40, 30));
    }

    void theTypeIsNotTheNames()
    {
        QImage picture(8, 4, QImage::Format_RGB32);
        picture.fill(Qt::blue);
        const QString name = path(QStringLiteral("photo.png"));
        testImages::writeFile(name, testImages::encoded(picture, "jpeg"));
        const Result<Image> image = Image::contentsOf(QUrl::fromLocalFile(name));
        QVERIFY(image.has_value());
        QVERIFY(image->format == ImageFormat::Jpeg);
    }

    void aReferenceLeavesTheBytesInTheFile()
    {
        const QString name = path(QStringLiteral("referenced.png"));
        testImages::writeFile(name, testImages::blackPng({40, 30}));
        const Result<Image> image = Image::byReferencing(QUrl::fromLocalFile(name));
        QVERIFY(image.has_value());
        QVERIFY(image->bytes.isEmpty());
        QCOMPARE(image->url, QUrl::fromLocalFile(name));
        QVERIFY(image->format == ImageFormat::Png);
        QCOMPARE(image->pixelSize, QSize(40, 30));
    }

    void anImageThatGoesToTheTrashStaysWhole()
    {
        const QString name = path(QStringLiteral("gone.png"));
        testImages::writeFile(name, testImages::blackPng({2000, 2000}));
        const Result<Image> image = Image::contentsOf(QUrl::fromLocalFile(name));
        QVERIFY(QFile::remove(name));
        QVERIFY(image.has_value());
        QCOMPARE(QImage::fromData(image->bytes).size(), QSize(2000, 2000));
    }

    void aMissingFileIsAnErrorOfTheFileSystem()
    {
        const QUrl missing = QUrl::fromLocalFile(path(QStringLiteral("none.png")));
        for (const Result<Image> &image : {Image::contentsOf(missing), Image::byReferencing(missing)}) {
            QVERIFY(!image.has_value());
            QVERIFY(image.error().isCocoa(Error::FileNoSuchFile));
        }
    }

    void whatIsNoImageDoesNotLoad_data()
    {
        QTest::addColumn<QByteArray>("bytes");
        QTest::newRow("empty") << QByteArray();
        QTest::newRow("text") << QByteArrayLiteral("not an image, whatever its name says");
        QTest::newRow("signature alone") << QByteArray("\x89PNG\r\n\x1a\n", 8);
    }

    void whatIsNoImageDoesNotLoad()
    {
        QFETCH(const QByteArray, bytes);
        const QString name = path(QStringLiteral("text.png"));
        testImages::writeFile(name, bytes);
        const QUrl url = QUrl::fromLocalFile(name);
        for (const Result<Image> &image : {Image::contentsOf(url), Image::byReferencing(url)}) {
            QVERIFY(!image.has_value());
            QCOMPARE(image.error().domain, Image::errorDomain);
        }
    }

    void aPipeIsRefusedWithoutWaiting()
    {
        const QString name = path(QStringLiteral("pipe.png"));
        QCOMPARE(::mkfifo(QFile::encodeName(name).constData(), 0600), 0);
        const QUrl url = QUrl::fromLocalFile(name);
        for (const Result<Image> &image : {Image::contentsOf(url), Image::byReferencing(url)}) {
            QVERIFY(!image.has_value());
            QCOMPARE(image.error().domain, Image::errorDomain);
        }
    }

    void aHugeFileIsRefused()
    {
        const QString name = path(QStringLiteral("huge.png"));
        testImages::writeFile(name, testImages::blackPng({10, 10}));
        QVERIFY(QFile::resize(name, Image::largestFile + 1));
        QVERIFY(!Image::contentsOf(QUrl::fromLocalFile(name)).has_value());
        QVERIFY(!Image::byReferencing(QUrl::fromLocalFile(name)).has_value());
    }
};

QTEST_GUILESS_MAIN(ImageTest)
#include "ImageTest.moc"
