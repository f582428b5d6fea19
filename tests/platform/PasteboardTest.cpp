#include "Pasteboard.h"

#include "TestImages.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QMimeData>
#include <QTest>
#include <QUrl>

namespace {

Image imageOf(const QByteArray &bytes, ImageFormat format)
{
    return {.url = {}, .bytes = bytes, .format = format, .pixelSize = QImage::fromData(bytes).size()};
}

QImage picture()
{
    QImage image(40, 20, QImage::Format_RGB32);
    image.fill(QColor(10, 200, 30));
    image.setPixelColor(0, 0, Qt::blue);
    return image;
}

const QMimeData &onClipboard()
{
    return *QGuiApplication::clipboard()->mimeData();
}

} // namespace

class PasteboardTest : public QObject {
    Q_OBJECT

private Q_SLOTS:

    void anImageLiesThereAsItsOwnBytes()
    {
        const QByteArray png = testImages::encoded(picture(), "png");
        QVERIFY(Pasteboard::general().writeObjects({imageOf(png, ImageFormat::Png)}));
        QCOMPARE(onClipboard().data(QStringLiteral("image/png")), png);
        QCOMPARE(
            onClipboard().formats(), QStringList({QStringLiteral("image/png"), QStringLiteral("image/bmp")}));
        QVERIFY(!onClipboard().hasText());
        QVERIFY(!onClipboard().hasUrls());
    }

    void anotherTypeIsDecodedWhenItIsAskedFor()
    {
        QImage source = picture();
        const QByteArray webp = testImages::encoded(source, "webp");
        QVERIFY(Pasteboard::general().writeObjects({imageOf(webp, ImageFormat::WebP)}));
        QCOMPARE(onClipboard().formats().first(), QStringLiteral("image/webp"));
        QCOMPARE(onClipboard().data(QStringLiteral("image/webp")), webp);
        const QImage decoded = QImage::fromData(webp).convertToFormat(QImage::Format_RGB32);
        for (const QString &type : {QStringLiteral("image/png"), QStringLiteral("image/bmp")}) {
            QCOMPARE(
                QImage::fromData(onClipboard().data(type)).convertToFormat(QImage::Format_RGB32), decoded);
        }
        QCOMPARE(
            qvariant_cast<QImage>(onClipboard().imageData()).convertToFormat(QImage::Format_RGB32), decoded);
        QVERIFY(onClipboard().data(QStringLiteral("text/plain")).isEmpty());
    }

    void aDamagedImageGivesNothingInAnotherType()
    {
        const QByteArray half = testImages::encoded(picture(), "png").left(40);
        QVERIFY(Pasteboard::general().writeObjects({imageOf(half, ImageFormat::Png)}));
        QCOMPARE(onClipboard().data(QStringLiteral("image/png")), half);
        QVERIFY(onClipboard().data(QStringLiteral("image/bmp")).isEmpty());
    }

    void clearingLeavesNothing()
    {
        const QByteArray png = testImages::encoded(picture(), "png");
        QVERIFY(Pasteboard::general().writeObjects({imageOf(png, ImageFormat::Png)}));
        Pasteboard::general().clearContents();
        const QMimeData *const left = QGuiApplication::clipboard()->mimeData();
        QVERIFY(left == nullptr || left->formats().isEmpty());
    }

    void severalImagesLieThereAsTheirFiles()
    {
        const QList<QUrl> urls = {
            QUrl::fromLocalFile(QStringLiteral("/home/a b/Screenshot 1.png")),
            QUrl::fromLocalFile(QStringLiteral("/home/line\nbreak%20.png"))};
        QList<Image> images;
        for (const QUrl &url : urls) {
            images.append({.url = url, .bytes = {}, .format = ImageFormat::Png, .pixelSize = {4, 3}});
        }
        QVERIFY(Pasteboard::general().writeObjects(images));
        QCOMPARE(onClipboard().urls(), urls);
        QCOMPARE(
            onClipboard().data(QStringLiteral("text/uri-list")),
            QByteArray("file:///home/a%20b/Screenshot%201.png\r\nfile:///home/line%0Abreak%2520.png\r\n"));
        QCOMPARE(
            onClipboard().data(QStringLiteral("x-special/gnome-copied-files")),
            QByteArray("copy\nfile:///home/a%20b/Screenshot%201.png\nfile:///home/line%0Abreak%2520.png"));
        QVERIFY(!onClipboard().hasImage());
        QCOMPARE(onClipboard().formats().size(), 2);
    }

    void anImageWithoutBytesLiesThereAsItsFile()
    {
        const QUrl url = QUrl::fromLocalFile(QStringLiteral("/home/Screenshot 1.png"));
        const Image image = {.url = url, .bytes = {}, .format = ImageFormat::Png, .pixelSize = {4, 3}};
        QVERIFY(Pasteboard::general().writeObjects({image}));
        QCOMPARE(onClipboard().urls(), QList<QUrl>({url}));
    }

    void noImageWritesNothing()
    {
        const QByteArray png = testImages::encoded(picture(), "png");
        QVERIFY(Pasteboard::general().writeObjects({imageOf(png, ImageFormat::Png)}));
        QVERIFY(!Pasteboard::general().writeObjects({}));
        QCOMPARE(onClipboard().data(QStringLiteral("image/png")), png);
    }
};

QTEST_MAIN(PasteboardTest)
#include "PasteboardTest.moc"
