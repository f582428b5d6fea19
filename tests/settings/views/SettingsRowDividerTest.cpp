#include "SettingsRowDivider.h"

#include "Hairline.h"

#include <QTest>

/// The line between two rows of a card, which begins where their texts do.
class SettingsRowDividerTest final : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void isInsetAtTheSideWhereOneBeginsToRead_data();
    void isInsetAtTheSideWhereOneBeginsToRead();
    void isAPointHigh();
};

void SettingsRowDividerTest::isInsetAtTheSideWhereOneBeginsToRead_data()
{
    QTest::addColumn<Qt::LayoutDirection>("direction");
    QTest::addColumn<int>("left");
    QTest::newRow("from left to right") << Qt::LeftToRight << 12;
    QTest::newRow("from right to left") << Qt::RightToLeft << 0;
}

void SettingsRowDividerTest::isInsetAtTheSideWhereOneBeginsToRead()
{
    QFETCH(const Qt::LayoutDirection, direction);
    SettingsRowDivider divider;
    divider.setLayoutDirection(direction);
    divider.resize(300, divider.sizeHint().height());
    divider.show();
    const QRect line = divider.findChild<Hairline *>()->geometry();
    QTEST(line.left(), "left");
    QCOMPARE(line.width(), 300 - 12);
    // One that changes its direction while it is shown.
    divider.setLayoutDirection(direction == Qt::LeftToRight ? Qt::RightToLeft : Qt::LeftToRight);
    QTRY_COMPARE(divider.findChild<Hairline *>()->geometry().left(), 12 - line.left());
}

void SettingsRowDividerTest::isAPointHigh()
{
    const SettingsRowDivider divider;
    QCOMPARE(divider.sizeHint().height(), 1);
}

QTEST_MAIN(SettingsRowDividerTest)
#include "SettingsRowDividerTest.moc"
