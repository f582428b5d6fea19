#include "PushButton.h"
#include "Theme.h"
#include "Typography.h"
#include "savePicture.h"

#include <QAccessible>
#include <QSignalSpy>
#include <QTest>

namespace {

/// A point of the face where no label is: above the text, in the middle.
constexpr QPoint onFace(30, PushButton::outset + 4);

QColor colorAt(QWidget &widget, QPoint point)
{
    const QImage image = widget.grab().toImage();
    return image.pixelColor(point * qRound(image.devicePixelRatio()));
}

} // namespace

class PushButtonTest final : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void hasTheGivenMeasures();
    void paintsItsStates();
    void focusRingLiesOutside();
    void disabledIsFaint();
    void presenceLetsTheGroundThrough();
    void clickBesideTheFaceDoesNothing();
    void returnAndSpacePress_data();
    void returnAndSpacePress();
    void textThatDoesNotFitIsTheTooltip();
    void isAButtonForAssistivePrograms();
};

void PushButtonTest::hasTheGivenMeasures()
{
    PushButton button(PushButton::Kind::Bordered, QStringLiteral("Keep"));
    QCOMPARE(button.sizeHint().height(), 28 + 2 * PushButton::outset);
    QCOMPARE(button.sizeHint().width(), button.labelWidth() + 24 + 2 * PushButton::outset);
    QCOMPARE(button.font().pixelSize(), 12);
    QCOMPARE(button.font().weight(), QFont::Medium);
}

void PushButtonTest::paintsItsStates()
{
    const Theme &theme = Theme::current();
    PushButton keep(PushButton::Kind::Bordered, QStringLiteral("Keep it here"));
    PushButton remove(PushButton::Kind::Destructive, QStringLiteral("Delete Now"));
    for (PushButton *button : {&keep, &remove}) {
        button->setAttribute(Qt::WA_UnderMouse, false);
        button->resize(button->sizeHint());
    }
    QCOMPARE(colorAt(keep, onFace), theme.face);
    QCOMPARE(colorAt(remove, onFace), theme.red);
    keep.setAttribute(Qt::WA_UnderMouse);
    remove.setAttribute(Qt::WA_UnderMouse);
    QCOMPARE(colorAt(keep, onFace), theme.faceHover);
    QCOMPARE(colorAt(remove, onFace), theme.redHover);
    keep.setDown(true);
    remove.setDown(true);
    QCOMPARE(colorAt(keep, onFace), theme.facePressed);
    QCOMPARE(colorAt(remove, onFace), theme.redPressed);
}

void PushButtonTest::focusRingLiesOutside()
{
    QWidget window;
    PushButton button(PushButton::Kind::Bordered, QStringLiteral("Keep it here"), &window);
    button.setGeometry(QRect(QPoint(40, 40), button.sizeHint())); // away from the pointer
    const QPoint onRing(button.width() / 2, 1);
    window.show();
    window.setFocus();
    const QColor without = colorAt(button, onRing);
    button.setFocus(Qt::TabFocusReason);
    QVERIFY(QTest::qWaitForWindowActive(&window));
    QTRY_VERIFY(button.hasFocus());
    QVERIFY(colorAt(button, onRing) != without);
    QCOMPARE(colorAt(button, onFace), Theme::current().face);
    savePicture(window, QStringLiteral("button-focused"));
}

void PushButtonTest::disabledIsFaint()
{
    QWidget ground;
    ground.setStyleSheet(QStringLiteral("QWidget { background: #000000 }"));
    PushButton button(PushButton::Kind::Destructive, QStringLiteral("Delete Now"), &ground);
    button.resize(button.sizeHint());
    button.setEnabled(false);
    ground.resize(button.size());
    const QColor expected = composited(
        [] {
            QColor red = Theme::current().red;
            red.setAlphaF(0.45F);
            return red;
        }(),
        Qt::black);
    const QColor seen = colorAt(ground, onFace);
    QVERIFY2(
        qAbs(seen.red() - expected.red()) <= 2 && qAbs(seen.green() - expected.green()) <= 2,
        qPrintable(seen.name()));
}

void PushButtonTest::presenceLetsTheGroundThrough()
{
    PushButton button(PushButton::Kind::Destructive, QStringLiteral("Delete Now"));
    button.resize(button.sizeHint());
    button.setPresence(0.55);
    QVERIFY(colorAt(button, onFace) != Theme::current().red);
    QVERIFY(button.isEnabled());
    button.setPresence(1);
    QCOMPARE(colorAt(button, onFace), Theme::current().red);
}

void PushButtonTest::clickBesideTheFaceDoesNothing()
{
    PushButton button(PushButton::Kind::Bordered, QStringLiteral("Keep"));
    button.resize(button.sizeHint());
    button.show();
    QSignalSpy clicked(&button, &PushButton::clicked);
    QTest::mouseClick(&button, Qt::LeftButton, {}, QPoint(1, 1));
    QCOMPARE(clicked.count(), 0);
    QTest::mouseClick(&button, Qt::LeftButton, {}, button.rect().center());
    QCOMPARE(clicked.count(), 1);
}

void PushButtonTest::returnAndSpacePress_data()
{
    QTest::addColumn<Qt::Key>("key");
    QTest::newRow("return") << Qt::Key_Return;
    QTest::newRow("enter") << Qt::Key_Enter;
    QTest::newRow("space") << Qt::Key_Space;
}

void PushButtonTest::returnAndSpacePress()
{
    QFETCH(const Qt::Key, key);
    PushButton button(PushButton::Kind::Bordered, QStringLiteral("Keep"));
    QSignalSpy clicked(&button, &PushButton::clicked);
    QTest::keyClick(&button, key);
    QCOMPARE(clicked.count(), 1);
}

void PushButtonTest::textThatDoesNotFitIsTheTooltip()
{
    PushButton button(
        PushButton::Kind::Bordered, QStringLiteral("A text that takes more room than there is"));
    button.show();
    button.resize(button.sizeHint());
    QVERIFY(button.toolTip().isEmpty());
    button.resize(100, button.height());
    QCOMPARE(button.toolTip(), button.text());
}

void PushButtonTest::isAButtonForAssistivePrograms()
{
    PushButton button(PushButton::Kind::Destructive, QStringLiteral("Delete Now"));
    QAccessibleInterface *accessible = QAccessible::queryAccessibleInterface(&button);
    QVERIFY(accessible != nullptr);
    QCOMPARE(accessible->role(), QAccessible::Button);
    QCOMPARE(accessible->text(QAccessible::Name), QStringLiteral("Delete Now"));
    QVERIFY(accessible->actionInterface()->actionNames().contains(QAccessibleActionInterface::pressAction()));
}

QTEST_MAIN(PushButtonTest)
#include "PushButtonTest.moc"
