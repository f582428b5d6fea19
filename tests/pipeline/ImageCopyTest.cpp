#include "ImageCopy.h"

#include "TemporaryHome.h"
#include "TestImages.h"
#include "files.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QMimeData>
#include <QTest>

namespace {

QByteArray imageOnClipboard()
{
    return QGuiApplication::clipboard()->mimeData()->data(QStringLiteral("image/png"));
}

} // namespace

class ImageCopyTest final : public QObject {
    Q_OBJECT

private:
    [[nodiscard]] QString makeImage(const QString &name) const
    {
        const QString path = m_home.path() + u'/' + name;
        testImages::writeFile(path, testImages::blackPng({static_cast<int>(name.size()), 4}));
        return path;
    }

    /// The paths that don't load are kept in `m_failed`.
    [[nodiscard]] QList<Image> load(const QStringList &paths)
    {
        m_failed.clear();
        return ImageCopy::load(paths, [this](const QString &path) { m_failed.append(path); });
    }

    const TemporaryHome m_home;
    QStringList m_failed;

private Q_SLOTS:

    void init() { QGuiApplication::clipboard()->clear(); }

    void onlyAnImageAloneIsReadWhole()
    {
        const QString one = makeImage(QStringLiteral("one.png"));
        const QString another = makeImage(QStringLiteral("another.png"));
        QVERIFY(!load({one}).constFirst().bytes.isEmpty());
        const QList<Image> both = load({one, another});
        QCOMPARE(both.size(), 2);
        QVERIFY(both.at(0).bytes.isEmpty());
        QVERIFY(both.at(1).bytes.isEmpty());
        QCOMPARE(both.at(1).url.toLocalFile(), another);
    }

    void theOnlyImageThatLoadsIsReadWhole()
    {
        const QString missing = m_home.path() + QStringLiteral("/missing.png");
        const QString text = m_home.path() + QStringLiteral("/text.png");
        files::write(text, "text");
        const QList<Image> images = load({missing, makeImage(QStringLiteral("one.png")), text});
        QCOMPARE(images.size(), 1);
        QVERIFY(!images.constFirst().bytes.isEmpty());
        QCOMPARE(m_failed, QStringList({missing, text}));
    }

    void theCopyThatWasAskedForLastStays()
    {
        const QList<Image> slow = load({makeImage(QStringLiteral("slow.png"))});
        const QList<Image> quick = load({makeImage(QStringLiteral("quick.png"))});
        const ImageCopy first;
        const ImageCopy second;
        QVERIFY(second.write(quick));
        QVERIFY(!first.write(slow));
        QCOMPARE(imageOnClipboard(), quick.constFirst().bytes);
    }

    void copiesThatEndInTheirOrderReplaceEachOther()
    {
        const QList<Image> one = load({makeImage(QStringLiteral("one.png"))});
        const QList<Image> another = load({makeImage(QStringLiteral("another.png"))});
        const ImageCopy first;
        const ImageCopy second;
        QVERIFY(first.write(one));
        QVERIFY(second.write(another));
        QCOMPARE(imageOnClipboard(), another.constFirst().bytes);
    }

    void aCopyThatFailedSupersedesNothing()
    {
        const QList<Image> slow = load({makeImage(QStringLiteral("slow.png"))});
        const ImageCopy first;
        const ImageCopy second;
        QVERIFY(!second.write(load({QStringLiteral("/nowhere.png")})));
        QVERIFY(first.write(slow));
        QCOMPARE(imageOnClipboard(), slow.constFirst().bytes);
    }
};

QTEST_MAIN(ImageCopyTest)
#include "ImageCopyTest.moc"
