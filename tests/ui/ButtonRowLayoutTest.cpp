#include "ButtonRowLayout.h"
#include "PushButton.h"

#include <QTest>

namespace {

constexpr int rowWidth = 268;

/// The button without the room of its focus ring.
QRect boxOf(const PushButton &button)
{
    constexpr int outset = PushButton::outset;
    return button.geometry().adjusted(outset, outset, -outset, -outset);
}

} // namespace

class ButtonRowLayoutTest final : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void rowSharesTheWidth();
    void goesUnderEachOtherWhenATextLacksItsSevenPoints();
    void equalSharesAreEqual();
    void isMirroredFromRightToLeft();
    void removedButtonLeavesItsPlace();
};

void ButtonRowLayoutTest::rowSharesTheWidth()
{
    QWidget window;
    auto *layout = new ButtonRowLayout;
    window.setLayout(layout);
    layout->setContentsMargins(0, 0, 0, 0);
    PushButton now(PushButton::Kind::Destructive, QStringLiteral("Now"));
    PushButton later(PushButton::Kind::Bordered, QStringLiteral("Later then"));
    PushButton keep(PushButton::Kind::Bordered, QStringLiteral("Keep"));
    for (PushButton *button : {&now, &later, &keep}) {
        layout->addButton(*button);
    }
    QCOMPARE(layout->heightForWidth(rowWidth), 28);
    layout->setGeometry(QRect(16, 100, rowWidth, 28));
    QCOMPARE(boxOf(now).topLeft(), QPoint(16, 100));
    QCOMPARE(boxOf(later).left() - boxOf(now).right() - 1, 8);
    QCOMPARE(boxOf(keep).left() - boxOf(later).right() - 1, 8);
    QCOMPARE(boxOf(keep).right(), 16 + rowWidth - 1);
    QCOMPARE(boxOf(keep).height(), 28);
    const int restOfNow = boxOf(now).width() - now.labelWidth();
    const int restOfLater = boxOf(later).width() - later.labelWidth();
    QVERIFY(qAbs(restOfNow - restOfLater) <= 1);
    for (PushButton *button : {&now, &later, &keep}) {
        button->setParent(nullptr);
    }
}

void ButtonRowLayoutTest::goesUnderEachOtherWhenATextLacksItsSevenPoints()
{
    QWidget window;
    auto *layout = new ButtonRowLayout;
    window.setLayout(layout);
    layout->setContentsMargins(0, 0, 0, 0);
    auto *one = new PushButton(PushButton::Kind::Destructive, QStringLiteral("A rather long text"));
    auto *other = new PushButton(PushButton::Kind::Bordered, QStringLiteral("Another rather long text"));
    layout->addButton(*one);
    layout->addButton(*other);
    const int leastRow = one->labelWidth() + other->labelWidth() + 4 * 7 + 8;
    QCOMPARE(layout->heightForWidth(leastRow), 28);
    QCOMPARE(layout->heightForWidth(leastRow - 1), 28 + 8 + 28);
    layout->setGeometry(QRect(16, 100, leastRow - 1, 64));
    QCOMPARE(boxOf(*one), QRect(16, 100, leastRow - 1, 28));
    QCOMPARE(boxOf(*other), QRect(16, 136, leastRow - 1, 28));
}

void ButtonRowLayoutTest::equalSharesAreEqual()
{
    QWidget window;
    auto *layout = new ButtonRowLayout(ButtonRowLayout::Shares::Equal);
    window.setLayout(layout);
    layout->setContentsMargins(0, 0, 0, 0);
    auto *cancel = new PushButton(PushButton::Kind::Bordered, QStringLiteral("Cancel"));
    auto *remove = new PushButton(PushButton::Kind::Destructive, QStringLiteral("Delete All of Them"));
    layout->addButton(*cancel);
    layout->addButton(*remove);
    layout->setGeometry(QRect(20, 100, 308, 28));
    QCOMPARE(boxOf(*cancel), QRect(20, 100, 150, 28));
    QCOMPARE(boxOf(*remove), QRect(178, 100, 150, 28));
    const int leastRow = 2 * (remove->labelWidth() + 14) + 8;
    QCOMPARE(layout->heightForWidth(leastRow), 28);
    QCOMPARE(layout->heightForWidth(leastRow - 1), 64);
}

void ButtonRowLayoutTest::isMirroredFromRightToLeft()
{
    QWidget window;
    window.setLayoutDirection(Qt::RightToLeft);
    auto *layout = new ButtonRowLayout;
    window.setLayout(layout);
    layout->setContentsMargins(0, 0, 0, 0);
    auto *first = new PushButton(PushButton::Kind::Bordered, QStringLiteral("Cancel"));
    auto *second = new PushButton(PushButton::Kind::Destructive, QStringLiteral("Delete"));
    layout->addButton(*first);
    layout->addButton(*second);
    layout->setGeometry(QRect(16, 100, rowWidth, 28));
    QCOMPARE(boxOf(*first).right(), 16 + rowWidth - 1);
    QCOMPARE(boxOf(*second).left(), 16);
}

void ButtonRowLayoutTest::removedButtonLeavesItsPlace()
{
    QWidget window;
    auto *layout = new ButtonRowLayout;
    window.setLayout(layout);
    auto *keep = new PushButton(PushButton::Kind::Bordered, QStringLiteral("Keep"));
    layout->addButton(*keep);
    QCOMPARE(layout->count(), 1);
    delete keep;
    QCOMPARE(layout->count(), 0);
}

QTEST_MAIN(ButtonRowLayoutTest)
#include "ButtonRowLayoutTest.moc"
