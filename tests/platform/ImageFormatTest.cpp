#include "ImageFormat.h"

#include "TestImages.h"

#include <QImage>
#include <QTest>

class ImageFormatTest : public QObject {
    Q_OBJECT

private Q_SLOTS:

    void typesAreToldByTheirFirstBytes_data()
    {
        QTest::addColumn<QByteArray>("bytes");
        QTest::addColumn<QString>("mimeType");
        QImage image(3, 2, QImage::Format_RGB32);
        image.fill(Qt::red);
        for (const char *const name : {"png", "jpeg", "webp", "bmp", "tiff"}) {
            QTest::newRow(name) << testImages::encoded(image, name)
                                << QString(QStringLiteral("image/") + QString::fromLatin1(name));
        }
        QTest::newRow("gif") << QByteArrayLiteral("GIF89a....") << QStringLiteral("image/gif");
        QTest::newRow("old gif") << QByteArrayLiteral("GIF87a....") << QStringLiteral("image/gif");
        QTest::newRow("big-endian tiff") << QByteArray("MM\0*", 4) << QStringLiteral("image/tiff");
        QTest::newRow("nothing") << QByteArray() << QString();
        QTest::newRow("half a signature") << QByteArrayLiteral("\x89PNG") << QString();
        QTest::newRow("text") << QByteArrayLiteral("BMW is a maker of cars") << QString();
        QTest::newRow("sound in RIFF") << QByteArrayLiteral("RIFF....WAVEfmt ") << QString();
        QTest::newRow("drawing") << QByteArrayLiteral("<svg xmlns='http://www.w3.org/2000/svg'/>")
                                 << QString();
    }

    void typesAreToldByTheirFirstBytes()
    {
        QFETCH(const QByteArray, bytes);
        QFETCH(const QString, mimeType);
        const auto format = recognizedImageFormat(bytes.left(imageFormatLeadingBytes));
        QCOMPARE(format ? ::mimeType(*format) : QString(), mimeType);
    }
};

QTEST_GUILESS_MAIN(ImageFormatTest)
#include "ImageFormatTest.moc"
