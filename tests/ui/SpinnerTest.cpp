#include "Spinner.h"
#include "Theme.h"
#include "rendering.h"

#include <QAccessible>
#include <QTest>

class SpinnerTest final : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void spinsOnlyWhileItCanBeSeen();
    void turns();
    void strokeGoesWithTheSide_data();
    void strokeGoesWithTheSide();
    void isFaintInWhatIsDisabled();
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

void SpinnerTest::strokeGoesWithTheSide_data()
{
    QTest::addColumn<int>("side");
    QTest::newRow("in buttons") << 14;
    QTest::newRow("regular") << Spinner::regularSide;
    QTest::newRow("large") << 32;
}

void SpinnerTest::strokeGoesWithTheSide()
{
    QFETCH(const int, side);
    for (const qreal ratio : pixelRatios) {
        Spinner spinner(side);
        QCOMPARE(spinner.size(), QSize(side, side));
        spinner.setColor(TextColor::Red);
        const QImage image = rendered(spinner, ratio);
        // The strong end is at the left, where the ring's middle is 0.125 of the side from the edge.
        const QColor onArc = colorAt(image, QPointF(0.125 * side, 0.5 * side + 0.5));
        QVERIFY2(onArc.alpha() > 150, qPrintable(QString::number(onArc.alpha())));
        QVERIFY(onArc.red() > onArc.green());
        QCOMPARE(colorAt(image, QPointF(side / 2.0, side / 2.0)).alpha(), 0);
    }
}

void SpinnerTest::isFaintInWhatIsDisabled()
{
    const auto strength = [](Spinner &spinner) {
        return colorAt(rendered(spinner, 2), {2.5, 10.5}).alphaF();
    };
    Spinner spinner;
    const float before = strength(spinner);
    QVERIFY(before > 0.5F);
    spinner.setEnabled(false);
    QVERIFY(qAbs(strength(spinner) - 0.45F * before) < 0.02F);
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
