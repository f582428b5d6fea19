#include "Switch.h"

#include "Theme.h"
#include "rendering.h"
#include "savePicture.h"

#include <QAccessible>
#include <QHBoxLayout>
#include <QSignalSpy>
#include <QTest>

namespace {

constexpr QPointF onTrackWhileOff(Switch::outset + 30, Switch::outset + 11);
constexpr QPointF onTrackWhileOn(Switch::outset + 8, Switch::outset + 11);

} // namespace

class SwitchTest final : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void hasTheGivenMeasures();
    void looksOnAndOff_data();
    void looksOnAndOff();
    void knobSlides();
    void clickTurnsIt();
    void clickBesideItDoesnt();
    void programTurnsItSilently();
    void keysTurnIt_data();
    void keysTurnIt();
    void focusRingLiesAroundIt();
    void disabledIsFaint();
    void isMirroredFromRightToLeft();
    void isACheckBoxForAssistivePrograms();
};

void SwitchTest::hasTheGivenMeasures()
{
    const Switch control;
    QCOMPARE(control.sizeHint(), QSize(38 + 2 * Switch::outset, 22 + 2 * Switch::outset));
}

void SwitchTest::looksOnAndOff_data()
{
    QTest::addColumn<ScopedLook::Look>("look");
    QTest::newRow("light") << ScopedLook::Look::Light;
    QTest::newRow("dark") << ScopedLook::Look::Dark;
}

void SwitchTest::looksOnAndOff()
{
    QFETCH(const ScopedLook::Look, look);
    const ScopedLook scoped(look);
    const Theme &theme = Theme::current();
    Switch control;
    control.resize(control.sizeHint());
    for (const qreal ratio : pixelRatios) {
        control.setOn(false);
        const QImage off = rendered(control, ratio, theme.window);
        QVERIFY(isNearly(colorAt(off, onTrackWhileOff), theme.switchOff));
        QVERIFY(isNearly(colorAt(off, onTrackWhileOn), theme.switchKnob));
        // Round at its ends.
        QVERIFY(isNearly(colorAt(off, {Switch::outset + 0.5, Switch::outset + 0.5}), theme.window, 6));
        control.setOn(true);
        const QImage on = rendered(control, ratio, theme.window);
        QVERIFY(isNearly(colorAt(on, onTrackWhileOn), theme.accent));
        QVERIFY(isNearly(colorAt(on, onTrackWhileOff), theme.switchKnob));
    }
}

void SwitchTest::knobSlides()
{
    // Away from the pointer.
    QWidget window;
    Switch control(&window);
    control.move(100, 100);
    window.show();
    control.setOn(true);
    // Still where it was.
    QVERIFY(!isNearly(colorAt(rendered(control), onTrackWhileOn), Theme::current().accent));
    QTRY_VERIFY(isNearly(colorAt(rendered(control), onTrackWhileOn), Theme::current().accent));
    // Turned on the way, it comes back.
    control.setOn(false);
    control.setOn(true);
    QTRY_VERIFY(isNearly(colorAt(rendered(control), onTrackWhileOn), Theme::current().accent));
    control.setOn(false);
    QTRY_VERIFY(isNearly(colorAt(rendered(control), onTrackWhileOff), Theme::current().switchOff));
}

void SwitchTest::clickTurnsIt()
{
    Switch control;
    control.show();
    QSignalSpy switched(&control, &Switch::switched);
    QTest::mouseClick(&control, Qt::LeftButton, {}, onTrackWhileOff.toPoint());
    QVERIFY(control.isOn());
    QTest::mouseClick(&control, Qt::LeftButton, {}, onTrackWhileOn.toPoint());
    QVERIFY(!control.isOn());
    QCOMPARE(switched, (QList<QVariantList>{{true}, {false}}));
    // It leaves the keyboard where it is.
    QVERIFY(!control.hasFocus());
}

void SwitchTest::clickBesideItDoesnt()
{
    Switch control;
    control.show();
    QSignalSpy switched(&control, &Switch::switched);
    QTest::mouseClick(&control, Qt::LeftButton, {}, QPoint(1, 1));
    QCOMPARE(switched.count(), 0);
}

void SwitchTest::programTurnsItSilently()
{
    Switch control;
    QSignalSpy switched(&control, &Switch::switched);
    control.setOn(true);
    QVERIFY(control.isOn());
    QVERIFY(control.isChecked());
    QCOMPARE(switched.count(), 0);
}

void SwitchTest::keysTurnIt_data()
{
    QTest::addColumn<Qt::Key>("key");
    QTest::newRow("space") << Qt::Key_Space;
    QTest::newRow("return") << Qt::Key_Return;
    QTest::newRow("enter") << Qt::Key_Enter;
}

void SwitchTest::keysTurnIt()
{
    QFETCH(const Qt::Key, key);
    Switch control;
    control.show();
    QSignalSpy switched(&control, &Switch::switched);
    QTest::keyClick(&control, key);
    QCOMPARE(switched, QList<QVariantList>{{true}});
}

void SwitchTest::focusRingLiesAroundIt()
{
    QWidget window;
    auto *const row = new QHBoxLayout(&window);
    auto *const control = new Switch;
    row->addWidget(new Switch);
    row->addWidget(control);
    window.show();
    window.activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(&window));
    const QPointF onRing(Switch::outset + 19, 1.5);
    QCOMPARE(colorAt(rendered(*control, 2), onRing).alpha(), 0);
    control->setFocus(Qt::TabFocusReason);
    QVERIFY(isNearly(colorAt(rendered(*control, 2), onRing), Theme::current().focusRing));
    savePicture(window, QStringLiteral("switch-focus"));
}

void SwitchTest::disabledIsFaint()
{
    Switch control;
    control.resize(control.sizeHint());
    control.setEnabled(false);
    const QColor track = colorAt(rendered(control), onTrackWhileOff);
    QVERIFY(qAbs(track.alphaF() - 0.45F) < 0.01F);
    QSignalSpy switched(&control, &Switch::switched);
    QTest::mouseClick(&control, Qt::LeftButton);
    QCOMPARE(switched.count(), 0);
}

void SwitchTest::isMirroredFromRightToLeft()
{
    Switch control;
    control.resize(control.sizeHint());
    control.setLayoutDirection(Qt::RightToLeft);
    QVERIFY(isNearly(colorAt(rendered(control), onTrackWhileOn), Theme::current().switchOff));
    control.setOn(true);
    QVERIFY(isNearly(colorAt(rendered(control), onTrackWhileOff), Theme::current().accent));
}

void SwitchTest::isACheckBoxForAssistivePrograms()
{
    Switch control;
    control.show();
    control.setAccessibleName(QStringLiteral("Auto-copy to clipboard"));
    QAccessibleInterface *const box = QAccessible::queryAccessibleInterface(&control);
    QCOMPARE(box->role(), QAccessible::CheckBox);
    QCOMPARE(box->text(QAccessible::Name), QStringLiteral("Auto-copy to clipboard"));
    QVERIFY(box->state().checkable);
    QVERIFY(!box->state().checked);
    QSignalSpy switched(&control, &Switch::switched);
    box->actionInterface()->doAction(QAccessibleActionInterface::pressAction());
    QCOMPARE(switched, QList<QVariantList>{{true}});
    QVERIFY(box->state().checked);
}

QTEST_MAIN(SwitchTest)
#include "SwitchTest.moc"
