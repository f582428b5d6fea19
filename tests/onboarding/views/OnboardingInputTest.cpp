#include "NotificationCenter.h"
#include "OnboardingFixture.h"

#include <QKeyEvent>
#include <QMouseEvent>

namespace {

/// The second press of a double click, and its release.
void pressAgain(QWidget &widget)
{
    const QPoint middle = widget.rect().center();
    QMouseEvent press(
        QEvent::MouseButtonDblClick, QPointF(middle), QPointF(widget.mapToGlobal(middle)), Qt::LeftButton,
        Qt::LeftButton, Qt::NoModifier);
    QCoreApplication::sendEvent(&widget, &press);
    QTest::mouseRelease(&widget, Qt::LeftButton);
}

} // namespace

/// Where the first run's keys and clicks lead.
class OnboardingInputTest final : public QObject {
    Q_OBJECT

private:
    static void press(Qt::Key key) { QTest::keyClick(QApplication::focusWidget(), key); }

    OnboardingFixture m_shown;

private Q_SLOTS:
    void init();
    void cleanup();
    void returnPressesTheLargeButton();
    void returnLeadsOnWhereTheLargeButtonHasNothingLeftToDo();
    void aHeldReturnKeyDoesNotRushThrough_data();
    void aHeldReturnKeyDoesNotRushThrough();
    void aDoubleClickLeadsOneStepOn_data();
    void aDoubleClickLeadsOneStepOn();
    void aDoubleClickOnBackLeadsTwoStepsBack();
    void aRingShowsOnlyWhereTheKeyboardBroughtIt();
    void theKeyboardGoesAlongWithThePages();
};

void OnboardingInputTest::init()
{
    m_shown.show();
}

void OnboardingInputTest::cleanup()
{
    m_shown.close();
}

void OnboardingInputTest::returnPressesTheLargeButton()
{
    QVERIFY(m_shown.view().hasFocus());
    press(Qt::Key_Return);
    QVERIFY(m_shown.view().step() == OnboardingStep::Notifications);
    QTRY_VERIFY(m_shown.isAtRest());
    QVERIFY(m_shown.view().hasFocus());
    m_shown.goTo(OnboardingStep::Done);
    press(Qt::Key_Enter);
    QCOMPARE(m_shown.finished(), 1);
    press(Qt::Key_Space);
    QCOMPARE(m_shown.finished(), 1);
}

void OnboardingInputTest::returnLeadsOnWhereTheLargeButtonHasNothingLeftToDo()
{
    m_shown.goTo(OnboardingStep::FolderAccess);
    NotificationCenter::defaultCenter().post(FileAccessManager::folderAccessGranted);
    QVERIFY(!onboardingPage::primary(m_shown.page()).isEnabled());
    press(Qt::Key_Return);
    QVERIFY(m_shown.view().step() == OnboardingStep::Done);
}

void OnboardingInputTest::aHeldReturnKeyDoesNotRushThrough_data()
{
    QTest::addColumn<OnboardingStep>("step");
    QTest::newRow("the first page") << OnboardingStep::Welcome;
    QTest::newRow("the last page") << OnboardingStep::Done;
}

void OnboardingInputTest::aHeldReturnKeyDoesNotRushThrough()
{
    QFETCH(const OnboardingStep, step);
    m_shown.goTo(step);
    onboardingPage::primary(m_shown.page()).setFocus(Qt::TabFocusReason);
    for (QWidget *const receiver : {QApplication::focusWidget(), static_cast<QWidget *>(&m_shown.view())}) {
        QKeyEvent held(QEvent::KeyPress, Qt::Key_Return, Qt::NoModifier, QStringLiteral("\r"), true);
        QCoreApplication::sendEvent(receiver, &held);
        QVERIFY(m_shown.view().step() == step);
        QCOMPARE(m_shown.finished(), 0);
    }
    press(Qt::Key_Return);
    QVERIFY(m_shown.view().step() != step || m_shown.finished() == 1);
}

void OnboardingInputTest::aDoubleClickLeadsOneStepOn_data()
{
    QTest::addColumn<OnboardingStep>("step");
    QTest::addColumn<OnboardingStep>("next");
    QTest::newRow("the welcome page") << OnboardingStep::Welcome << OnboardingStep::Notifications;
    QTest::newRow("the notifications page") << OnboardingStep::Notifications << OnboardingStep::FolderAccess;
    QTest::newRow("the folder page") << OnboardingStep::FolderAccess << OnboardingStep::Done;
}

void OnboardingInputTest::aDoubleClickLeadsOneStepOn()
{
    QFETCH(const OnboardingStep, step);
    QFETCH(const OnboardingStep, next);
    m_shown.goTo(step);
    auto *const link = m_shown.page().findChild<OnboardingSkipLink *>();
    QWidget &button =
        link == nullptr ? static_cast<QWidget &>(onboardingPage::primary(m_shown.page())) : *link;
    const QPoint place = button.mapTo(&m_shown.view(), button.rect().center());
    QTest::mouseClick(m_shown.view().windowHandle(), Qt::LeftButton, {}, place);
    QVERIFY(m_shown.view().step() == next);
    QTRY_VERIFY(m_shown.isAtRest());
    // The toolkit sends the second press to whatever is under the pointer by now.
    pressAgain(*m_shown.view().childAt(place));
    QVERIFY(m_shown.view().step() == next);
    QCOMPARE(m_shown.finished(), 0);
}

void OnboardingInputTest::aDoubleClickOnBackLeadsTwoStepsBack()
{
    m_shown.goTo(OnboardingStep::FolderAccess);
    QTest::mouseClick(&m_shown.back(), Qt::LeftButton);
    pressAgain(m_shown.back());
    QVERIFY(m_shown.view().step() == OnboardingStep::Welcome);
}

void OnboardingInputTest::aRingShowsOnlyWhereTheKeyboardBroughtIt()
{
    QVERIFY(!onboardingPage::primary(m_shown.page()).hasFocus());
    QTest::mouseClick(&onboardingPage::primary(m_shown.page()), Qt::LeftButton);
    QTRY_VERIFY(m_shown.isAtRest());
    QVERIFY(m_shown.view().hasFocus());
    press(Qt::Key_Tab);
    QVERIFY(m_shown.back().hasFocus());
    press(Qt::Key_Tab);
    QVERIFY(onboardingPage::primary(m_shown.page()).hasFocus());
    press(Qt::Key_Tab);
    QVERIFY(onboardingPage::secondary(m_shown.page()).hasFocus());
}

void OnboardingInputTest::theKeyboardGoesAlongWithThePages()
{
    press(Qt::Key_Tab);
    QVERIFY(onboardingPage::primary(m_shown.page()).hasFocus());
    press(Qt::Key_Space);
    QVERIFY(m_shown.view().step() == OnboardingStep::Notifications);
    QVERIFY(onboardingPage::primary(m_shown.page()).hasFocus());
    press(Qt::Key_Tab);
    press(Qt::Key_Return);
    QVERIFY(m_shown.view().step() == OnboardingStep::FolderAccess);
    QTRY_VERIFY(
        QApplication::focusWidget() != nullptr && m_shown.page().isAncestorOf(QApplication::focusWidget()));
    // The way back keeps the keyboard as long as it is there.
    m_shown.back().setFocus(Qt::TabFocusReason);
    press(Qt::Key_Return);
    QVERIFY(m_shown.view().step() == OnboardingStep::Notifications);
    QVERIFY(m_shown.back().hasFocus());
    press(Qt::Key_Return);
    QVERIFY(m_shown.view().step() == OnboardingStep::Welcome);
    QVERIFY(onboardingPage::primary(m_shown.page()).hasFocus());
}

QTEST_MAIN(OnboardingInputTest)
#include "OnboardingInputTest.moc"
