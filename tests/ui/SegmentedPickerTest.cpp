#include "SegmentedPicker.h"
#include "Segment.h"
#include "Theme.h"
#include "rendering.h"
#include "savePicture.h"

#include <QAccessible>
#include <QHBoxLayout>
#include <QLineEdit>
#include <QSignalSpy>
#include <QTest>

namespace {

const QStringList sizes{QStringLiteral("Compact"), QStringLiteral("Standard"), QStringLiteral("Large")};

/// Beside the label of the segment at `index`, where one sees what it stands on.
QPointF besideLabel(const SegmentedPicker &picker, int index)
{
    const QRect box = picker.findChildren<Segment *>().at(index)->geometry();
    return {box.left() + 5.0, static_cast<qreal>(box.center().y())};
}

Segment *segmentAt(const SegmentedPicker &picker, int index)
{
    return picker.findChildren<Segment *>().at(index);
}

} // namespace

class SegmentedPickerTest final : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void hasTheGivenMeasures();
    void chosenOptionStandsOnASegment_data();
    void chosenOptionStandsOnASegment();
    void segmentSlides();
    void clickChooses();
    void programChoosesSilently();
    void keysChoose_data();
    void keysChoose();
    void modifiersAreLeftToOthers();
    void isOneTabStop();
    void focusRingLiesAroundTheWell();
    void disabledIsFaint();
    void isMirroredFromRightToLeft();
    void squeezedLabelsAreElided();
    void isAGroupOfRadioButtonsForAssistivePrograms();
};

void SegmentedPickerTest::hasTheGivenMeasures()
{
    SegmentedPicker picker(sizes);
    QCOMPARE(picker.sizeHint().height(), 28 + 2 * SegmentedPicker::outset);
    int labels = 0;
    for (int index = 0; index < 3; ++index) {
        const Segment &segment = *segmentAt(picker, index);
        const int label = qCeil(QFontMetricsF(segment.font()).horizontalAdvance(sizes[index]));
        QCOMPARE(segment.width(), label + 24);
        QCOMPARE(segment.font().pixelSize(), 12);
        labels += label;
    }
    QCOMPARE(picker.sizeHint().width(), labels + 3 * 24 + 4 + 2 * SegmentedPicker::outset);
    QCOMPARE(segmentAt(picker, 0)->geometry().topLeft(), QPoint(6, 6));
    QCOMPARE(segmentAt(picker, 0)->height(), 24);
    picker.setSize(SegmentedPicker::Size::Small);
    QCOMPARE(picker.sizeHint().height(), 26 + 2 * SegmentedPicker::outset);
}

void SegmentedPickerTest::chosenOptionStandsOnASegment_data()
{
    QTest::addColumn<ScopedLook::Look>("look");
    QTest::newRow("light") << ScopedLook::Look::Light;
    QTest::newRow("dark") << ScopedLook::Look::Dark;
}

void SegmentedPickerTest::chosenOptionStandsOnASegment()
{
    QFETCH(const ScopedLook::Look, look);
    const ScopedLook scoped(look);
    const Theme &theme = Theme::current();
    SegmentedPicker picker(sizes);
    picker.setCurrentIndex(1);
    QCOMPARE(picker.currentIndex(), 1);
    for (const qreal ratio : pixelRatios) {
        const QImage image = rendered(picker, ratio, theme.window);
        const QColor well = composited(theme.well, theme.window);
        QVERIFY(isNearly(colorAt(image, besideLabel(picker, 0)), well));
        QVERIFY(isNearly(colorAt(image, besideLabel(picker, 1)), theme.segment));
        QVERIFY(isNearly(colorAt(image, besideLabel(picker, 2)), well));
        // Nothing outside the well, and its corners are round.
        QVERIFY(isNearly(colorAt(image, {2, 18}), theme.window));
        QVERIFY(isNearly(colorAt(image, {4, 4}), theme.window, 6));
    }
}

void SegmentedPickerTest::segmentSlides()
{
    SegmentedPicker picker(sizes);
    picker.show();
    picker.setCurrentIndex(2);
    const QColor well = Theme::current().well;
    // Still where it was.
    QVERIFY(!isNearly(colorAt(rendered(picker), besideLabel(picker, 0)), well));
    QTRY_VERIFY(isNearly(colorAt(rendered(picker), besideLabel(picker, 2)), Theme::current().segment));
    QTRY_VERIFY(isNearly(colorAt(rendered(picker), besideLabel(picker, 0)), well));
    // Another choice on the way takes it from where it is.
    picker.setCurrentIndex(0);
    picker.setCurrentIndex(1);
    QTRY_VERIFY(isNearly(colorAt(rendered(picker), besideLabel(picker, 1)), Theme::current().segment));
    QTRY_VERIFY(isNearly(colorAt(rendered(picker), besideLabel(picker, 2)), well));
    QVERIFY(isNearly(colorAt(rendered(picker), besideLabel(picker, 0)), well));
}

void SegmentedPickerTest::clickChooses()
{
    SegmentedPicker picker(sizes);
    picker.show();
    QSignalSpy chosen(&picker, &SegmentedPicker::currentIndexChosen);
    // Anywhere in the segment, also beside its label.
    QTest::mouseClick(segmentAt(picker, 2), Qt::LeftButton, {}, QPoint(2, 2));
    QCOMPARE(picker.currentIndex(), 2);
    QCOMPARE(chosen, QList<QVariantList>{{2}});
    QTest::mouseClick(segmentAt(picker, 2), Qt::LeftButton);
    QCOMPARE(chosen.count(), 1);
    QVERIFY(segmentAt(picker, 2)->isChecked());
}

void SegmentedPickerTest::programChoosesSilently()
{
    SegmentedPicker picker(sizes);
    QSignalSpy chosen(&picker, &SegmentedPicker::currentIndexChosen);
    picker.setCurrentIndex(1);
    QCOMPARE(chosen.count(), 0);
    QVERIFY(segmentAt(picker, 1)->isChecked());
    QVERIFY(!segmentAt(picker, 0)->isChecked());
}

void SegmentedPickerTest::keysChoose_data()
{
    QTest::addColumn<int>("start");
    QTest::addColumn<Qt::Key>("key");
    QTest::addColumn<Qt::LayoutDirection>("direction");
    QTest::addColumn<int>("end");
    QTest::newRow("right") << 0 << Qt::Key_Right << Qt::LeftToRight << 1;
    QTest::newRow("left") << 1 << Qt::Key_Left << Qt::LeftToRight << 0;
    QTest::newRow("down") << 1 << Qt::Key_Down << Qt::LeftToRight << 2;
    QTest::newRow("up") << 1 << Qt::Key_Up << Qt::LeftToRight << 0;
    QTest::newRow("home") << 2 << Qt::Key_Home << Qt::LeftToRight << 0;
    QTest::newRow("end") << 0 << Qt::Key_End << Qt::LeftToRight << 2;
    QTest::newRow("right at the end") << 2 << Qt::Key_Right << Qt::LeftToRight << 2;
    QTest::newRow("left at the start") << 0 << Qt::Key_Left << Qt::LeftToRight << 0;
    QTest::newRow("right, right to left") << 1 << Qt::Key_Right << Qt::RightToLeft << 0;
    QTest::newRow("left, right to left") << 1 << Qt::Key_Left << Qt::RightToLeft << 2;
}

void SegmentedPickerTest::keysChoose()
{
    QFETCH(const int, start);
    QFETCH(const Qt::Key, key);
    QFETCH(const Qt::LayoutDirection, direction);
    QFETCH(const int, end);
    SegmentedPicker picker(sizes);
    picker.setLayoutDirection(direction);
    picker.setCurrentIndex(start);
    picker.show();
    segmentAt(picker, start)->setFocus();
    QSignalSpy chosen(&picker, &SegmentedPicker::currentIndexChosen);
    QTest::keyClick(picker.focusWidget(), key);
    QCOMPARE(picker.currentIndex(), end);
    QCOMPARE(chosen.count(), start == end ? 0 : 1);
    QCOMPARE(picker.focusWidget(), segmentAt(picker, end));
}

void SegmentedPickerTest::modifiersAreLeftToOthers()
{
    SegmentedPicker picker(sizes);
    QTest::keyClick(segmentAt(picker, 0), Qt::Key_Right, Qt::AltModifier);
    QCOMPARE(picker.currentIndex(), 0);
    QKeyEvent letter(QEvent::KeyPress, Qt::Key_A, Qt::NoModifier);
    QCoreApplication::sendEvent(segmentAt(picker, 0), &letter);
    QVERIFY(!letter.isAccepted());
}

void SegmentedPickerTest::isOneTabStop()
{
    QWidget window;
    auto *row = new QHBoxLayout(&window);
    auto *before = new QLineEdit(&window);
    auto *picker = new SegmentedPicker(sizes, &window);
    auto *after = new QLineEdit(&window);
    row->addWidget(before);
    row->addWidget(picker);
    row->addWidget(after);
    picker->setCurrentIndex(1);
    window.show();
    window.activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(&window));
    before->setFocus();
    QTest::keyClick(before, Qt::Key_Tab);
    QCOMPARE(window.focusWidget(), segmentAt(*picker, 1));
    QTest::keyClick(window.focusWidget(), Qt::Key_Right);
    QCOMPARE(window.focusWidget(), segmentAt(*picker, 2));
    QTest::keyClick(window.focusWidget(), Qt::Key_Tab);
    QCOMPARE(window.focusWidget(), after);
    QTest::keyClick(window.focusWidget(), Qt::Key_Backtab, Qt::ShiftModifier);
    QCOMPARE(window.focusWidget(), segmentAt(*picker, 2));
    savePicture(window, QStringLiteral("segmented-picker"));
}

void SegmentedPickerTest::focusRingLiesAroundTheWell()
{
    SegmentedPicker picker(sizes);
    picker.show();
    picker.activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(&picker));
    const QPointF onRing(picker.width() / 2.0, 1.5);
    picker.setFocus();
    QCOMPARE(colorAt(rendered(picker, 2), onRing).alpha(), 0);
    segmentAt(picker, 0)->setFocus();
    QTRY_VERIFY(segmentAt(picker, 0)->hasFocus());
    QVERIFY(isNearly(colorAt(rendered(picker, 2), onRing), Theme::current().focusRing));
}

void SegmentedPickerTest::disabledIsFaint()
{
    SegmentedPicker picker(sizes);
    picker.setEnabled(false);
    const QColor well = colorAt(rendered(picker), besideLabel(picker, 2));
    QVERIFY(qAbs(well.alphaF() - 0.45F * Theme::current().well.alphaF()) < 0.01F);
    QSignalSpy chosen(&picker, &SegmentedPicker::currentIndexChosen);
    QTest::mouseClick(segmentAt(picker, 2), Qt::LeftButton);
    QCOMPARE(chosen.count(), 0);
}

void SegmentedPickerTest::isMirroredFromRightToLeft()
{
    SegmentedPicker picker(sizes);
    picker.setLayoutDirection(Qt::RightToLeft);
    QVERIFY(segmentAt(picker, 0)->x() > segmentAt(picker, 1)->x());
    QVERIFY(segmentAt(picker, 1)->x() > segmentAt(picker, 2)->x());
    QCOMPARE(segmentAt(picker, 0)->geometry().right(), picker.width() - 1 - 6);
}

void SegmentedPickerTest::squeezedLabelsAreElided()
{
    SegmentedPicker picker(sizes);
    picker.show();
    QVERIFY(segmentAt(picker, 1)->toolTip().isEmpty());
    picker.resize(90, 36);
    QCOMPARE(segmentAt(picker, 1)->toolTip(), QStringLiteral("Standard"));
    QCOMPARE(segmentAt(picker, 2)->geometry().right(), 90 - 1 - 6);
}

void SegmentedPickerTest::isAGroupOfRadioButtonsForAssistivePrograms()
{
    SegmentedPicker picker(sizes);
    picker.setAccessibleName(QStringLiteral("Grid Size"));
    picker.setCurrentIndex(1);
    QAccessibleInterface *group = QAccessible::queryAccessibleInterface(&picker);
    QVERIFY(group != nullptr);
    QCOMPARE(group->role(), QAccessible::Grouping);
    QCOMPARE(group->text(QAccessible::Name), QStringLiteral("Grid Size"));
    QCOMPARE(group->childCount(), 3);
    for (int index = 0; index < 3; ++index) {
        QAccessibleInterface *option = group->child(index);
        QCOMPARE(option->role(), QAccessible::RadioButton);
        QCOMPARE(option->text(QAccessible::Name), sizes[index]);
        QCOMPARE(bool(option->state().checked), index == 1);
    }
    QSignalSpy chosen(&picker, &SegmentedPicker::currentIndexChosen);
    group->child(2)->actionInterface()->doAction(QAccessibleActionInterface::toggleAction());
    QCOMPARE(picker.currentIndex(), 2);
    QCOMPARE(chosen.count(), 1);
}

QTEST_MAIN(SegmentedPickerTest)
#include "SegmentedPickerTest.moc"
