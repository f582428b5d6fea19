#include "GalleryGridSize.h"

#include <QTest>

#include <limits>

class GalleryGridSizeTest final : public QObject {
    Q_OBJECT

private Q_SLOTS:

    void theSizesAreOfferedInTheirOrder()
    {
        QStringList titles;
        for (const GalleryGridSize size : galleryGrid::allSizes) {
            titles.append(galleryGrid::title(size));
        }
        QCOMPARE(
            titles,
            QStringList({QStringLiteral("Compact"), QStringLiteral("Standard"), QStringLiteral("Large")}));
    }

    void eachSizeHasItsNumbers_data()
    {
        QTest::addColumn<GalleryGridSize>("size");
        QTest::addColumn<QList<int>>("numbers");
        QTest::newRow("compact") << GalleryGridSize::Compact << QList<int>({80, 60, 8, 10});
        QTest::newRow("standard") << GalleryGridSize::Standard << QList<int>({120, 90, 12, 6});
        QTest::newRow("large") << GalleryGridSize::Large << QList<int>({200, 150, 16, 3});
    }

    void eachSizeHasItsNumbers()
    {
        QFETCH(const GalleryGridSize, size);
        QFETCH(const QList<int>, numbers);
        QCOMPARE(
            QList<int>(
                {galleryGrid::thumbnailWidth(size), galleryGrid::thumbnailHeight(size),
                 galleryGrid::spacing(size), galleryGrid::columnCount(size)}),
            numbers);
        QCOMPARE(galleryGrid::thumbnailWidth(size) * 3, galleryGrid::thumbnailHeight(size) * 4);
    }

    void asManyWholeColumnsAsFit_data()
    {
        QTest::addColumn<GalleryGridSize>("size");
        QTest::addColumn<int>("width");
        QTest::addColumn<int>("columns");
        const auto compact = GalleryGridSize::Compact;
        QTest::newRow("exactly ten compact") << compact << 10 * 80 + 9 * 8 << 10;
        QTest::newRow("one point less than ten") << compact << 10 * 80 + 9 * 8 - 1 << 9;
        QTest::newRow("room for more than its own") << compact << 5000 << 10;
        QTest::newRow("exactly one") << compact << 80 << 1;
        QTest::newRow("less than two") << compact << 80 + 8 + 79 << 1;
        QTest::newRow("less than one") << compact << 79 << 1;
        QTest::newRow("nothing") << compact << 0 << 1;
        QTest::newRow("less than nothing") << compact << -1000 << 1;
        QTest::newRow("the narrowest that can be said")
            << compact << std::numeric_limits<int>::min() + 1000 << 1;
        QTest::newRow("the widest that can be said") << compact << std::numeric_limits<int>::max() << 10;
        QTest::newRow("exactly six standard") << GalleryGridSize::Standard << 6 * 120 + 5 * 12 << 6;
        QTest::newRow("less than six standard") << GalleryGridSize::Standard << 6 * 120 + 5 * 12 - 1 << 5;
        QTest::newRow("exactly three large") << GalleryGridSize::Large << 3 * 200 + 2 * 16 << 3;
        QTest::newRow("less than three large") << GalleryGridSize::Large << 3 * 200 + 2 * 16 - 1 << 2;
    }

    void asManyWholeColumnsAsFit()
    {
        QFETCH(const GalleryGridSize, size);
        QFETCH(const int, width);
        QFETCH(const int, columns);
        QCOMPARE(galleryGrid::columnCountFitting(size, width), columns);
    }
};

QTEST_GUILESS_MAIN(GalleryGridSizeTest)
#include "GalleryGridSizeTest.moc"
