#include "Symbols.h"

#include <QTest>

class SymbolsTest final : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void everySymbolOfTheMenuPaintsSomething_data();
    void everySymbolOfTheMenuPaintsSomething();
    void symbolHasTheTintAndNothingElse();
    void symbolIsCrispAtTwoPixelsPerPoint();
    void iconKnowsItsSymbol();
};

void SymbolsTest::everySymbolOfTheMenuPaintsSomething_data()
{
    QTest::addColumn<QString>("name");
    for (const char *name :
         {"camera.fill", "photo.on.rectangle.angled", "timer", "gearshape", "arrow.triangle.2.circlepath"}) {
        QTest::newRow(name) << QString::fromLatin1(name);
    }
}

void SymbolsTest::everySymbolOfTheMenuPaintsSomething()
{
    QFETCH(const QString, name);
    const QImage image = Symbols::image(name, 17, 1, Qt::black);
    int painted = 0;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            painted += qAlpha(image.pixel(x, y)) > 128 ? 1 : 0;
        }
    }
    QVERIFY2(painted > 17, qPrintable(QString::number(painted)));
    QVERIFY(painted < 17 * 17);
}

void SymbolsTest::symbolHasTheTintAndNothingElse()
{
    const QImage image = Symbols::image(QStringLiteral("camera.fill"), 24, 1, Qt::red);
    // The middle of the lens is filled, the corner isn't.
    QCOMPARE(image.pixelColor(12, 13), QColor(Qt::red));
    QCOMPARE(image.pixelColor(0, 0).alpha(), 0);
}

void SymbolsTest::symbolIsCrispAtTwoPixelsPerPoint()
{
    const QImage image = Symbols::image(QStringLiteral("timer"), 17, 2, Qt::black);
    QCOMPARE(image.size(), QSize(34, 34));
    QCOMPARE(image.devicePixelRatio(), 2.0);
}

void SymbolsTest::iconKnowsItsSymbol()
{
    const QIcon icon = Symbols::icon(QStringLiteral("gearshape"));
    QCOMPARE(icon.name(), QStringLiteral("gearshape"));
    QVERIFY(!icon.isNull());
    QVERIFY(!icon.pixmap(16).isNull());
}

QTEST_MAIN(SymbolsTest)
#include "SymbolsTest.moc"
