#include "Spinner.h"
#include "Theme.h"

#include <QAccessible>
#include <QTest>

class SpinnerTest final : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void spinsOnlyWhileItCanBeSeen();
    void turns();
    void leavesAQuarterOpen();
    void isProgressWithoutAnEndForAssistivePrograms();
};

void SpinnerTest::spinsOnlyWhileItCanBeSeen()
{
    QWidget window;
    Spinner spinner(&window);
    QVERIFY(!spinner.isSpinning());
    window.show();
    QVERIFY(spinner.isSpinning());
    window.hide();
    QVERIFY(!spinner.isSpinning());
    window.show();
    QVERIFY(spinner.isSpinning());
    spinner.hide();
    QVERIFY(!spinner.isSpinning());
}

void SpinnerTest::turns()
{
    QWidget window;
    Spinner spinner(&window);
    window.show();
    const QImage first = window.grab().toImage();
    QTRY_VERIFY(window.grab().toImage() != first);
}

void SpinnerTest::leavesAQuarterOpen()
{
    Spinner spinner;
    spinner.setAttribute(Qt::WA_TranslucentBackground);
    const QImage image = spinner.grab().toImage();
    const qreal scale = image.devicePixelRatio();
    const auto alphaAt = [&image, scale](qreal x, qreal y) {
        return image.pixelColor(QPointF(x * scale, y * scale).toPoint()).alpha();
    };
    // On the ring, which lies 7.5 from the middle: strong at the left end, faint at the right, and nothing
    // in the quarter between them or in the middle.
    QVERIFY2(alphaAt(3, 11.5) > 180, qPrintable(QString::number(alphaAt(3, 11.5))));
    QVERIFY(alphaAt(17, 9) > 0 && alphaAt(17, 9) < alphaAt(3, 11.5));
    QCOMPARE(alphaAt(4.5, 4.5), 0);
    QCOMPARE(alphaAt(10, 10), 0);
}

void SpinnerTest::isProgressWithoutAnEndForAssistivePrograms()
{
    Spinner spinner;
    QAccessibleInterface *accessible = QAccessible::queryAccessibleInterface(&spinner);
    QVERIFY(accessible != nullptr);
    QCOMPARE(accessible->role(), QAccessible::ProgressBar);
    QVERIFY(!accessible->text(QAccessible::Name).isEmpty());
    QCOMPARE(spinner.minimum(), spinner.maximum());
}

QTEST_MAIN(SpinnerTest)
#include "SpinnerTest.moc"
