#include "SheetFixture.h"

#include <QAccessible>
#include <QAction>
#include <QSignalSpy>

/// How a sheet is answered, what it keeps from what lies under it, and how it ends.
class SheetTest final : public SheetFixture {
    Q_OBJECT

private Q_SLOTS:

    void init() { makeWindow(); }

    void cleanup() { m_window.reset(); }

    void firstFocusIsOnWhatCancels();
    void escapeAnswersWithTheCancelButton();
    void escapeAnswersWithAnOnlyButton();
    void answersOnceByMouse();
    void returnPressesTheFocusedButton();
    void tabStaysInside();
    void focusComesBackInside();
    void focusIsGivenBack();
    void nothingReachesWhatLiesUnderIt();
    void shortcutsUnderItAreOff();
    void goesWithItsHost();
    void goesWithItsWindow();
    void actionMayEndTheWindow();
    void dismissedSheetHasNoAnswer();
    void secondSheetKeepsTheFocus();
    void isADialogForAssistivePrograms();
};

void SheetTest::firstFocusIsOnWhatCancels()
{
    const QPointer<Sheet> sheet = present(deletion(m_answers));
    QVERIFY(buttonNamed(*sheet, QStringLiteral("Cancel"))->hasFocus());
}

void SheetTest::escapeAnswersWithTheCancelButton()
{
    const QPointer<Sheet> sheet = present(deletion(m_answers));
    buttonNamed(*sheet, QStringLiteral("Delete All"))->setFocus();
    QTest::keyClick(m_window->focusWidget(), Qt::Key_Escape);
    QCOMPARE(m_answers, QStringList(QStringLiteral("cancel")));
    QTRY_VERIFY(sheet.isNull());
}

void SheetTest::escapeAnswersWithAnOnlyButton()
{
    SheetDescription description = copied(QStringLiteral("3 screenshots copied to your clipboard"));
    description.buttons.first().action = [this] { m_answers << QStringLiteral("ok"); };
    const QPointer<Sheet> sheet = present(description);
    QVERIFY(buttonNamed(*sheet, QStringLiteral("OK"))->hasFocus());
    QTest::keyClick(m_window->focusWidget(), Qt::Key_Escape);
    QCOMPARE(m_answers, QStringList(QStringLiteral("ok")));
    QTRY_VERIFY(sheet.isNull());
}

void SheetTest::answersOnceByMouse()
{
    const QPointer<Sheet> sheet = present(deletion(m_answers));
    PushButton *button = buttonNamed(*sheet, QStringLiteral("Delete All"));
    QTest::mouseClick(button, Qt::LeftButton);
    button->click();
    sheet->dismiss();
    QCOMPARE(m_answers, QStringList(QStringLiteral("delete")));
    QVERIFY(!sheet->isVisible());
    QTRY_VERIFY(sheet.isNull());
}

void SheetTest::returnPressesTheFocusedButton()
{
    const QPointer<Sheet> sheet = present(deletion(m_answers));
    QTest::keyClick(m_window->focusWidget(), Qt::Key_Tab);
    QTest::keyClick(m_window->focusWidget(), Qt::Key_Return);
    QCOMPARE(m_answers, QStringList(QStringLiteral("delete")));
}

void SheetTest::tabStaysInside()
{
    const QPointer<Sheet> sheet = present(deletion(m_answers));
    PushButton *cancel = buttonNamed(*sheet, QStringLiteral("Cancel"));
    PushButton *remove = buttonNamed(*sheet, QStringLiteral("Delete All"));
    QTest::keyClick(m_window->focusWidget(), Qt::Key_Tab);
    QVERIFY(remove->hasFocus());
    QTest::keyClick(m_window->focusWidget(), Qt::Key_Tab);
    QVERIFY(cancel->hasFocus());
    QTest::keyClick(m_window->focusWidget(), Qt::Key_Backtab, Qt::ShiftModifier);
    QVERIFY(remove->hasFocus());
    QTest::keyClick(m_window->focusWidget(), Qt::Key_Left);
    QVERIFY(cancel->hasFocus());
}

void SheetTest::focusComesBackInside()
{
    const QPointer<Sheet> sheet = present(deletion(m_answers));
    m_field->setFocus();
    QVERIFY(buttonNamed(*sheet, QStringLiteral("Cancel"))->hasFocus());
}

void SheetTest::focusIsGivenBack()
{
    const QPointer<Sheet> sheet = present(deletion(m_answers));
    QTest::keyClick(m_window->focusWidget(), Qt::Key_Escape);
    QVERIFY(m_field->hasFocus());
}

void SheetTest::nothingReachesWhatLiesUnderIt()
{
    const QPointer<Sheet> sheet = present(deletion(m_answers));
    const QPoint onScrim(100, 100);
    QWindow *window = m_window->windowHandle();
    QTest::mouseClick(window, Qt::LeftButton, {}, onScrim);
    QTest::mouseClick(window, Qt::RightButton, {}, onScrim);
    QTest::keyClick(window, Qt::Key_A, Qt::ControlModifier);
    QTest::keyClick(window, Qt::Key_Delete);
    QTest::keyClick(window, Qt::Key_PageDown);
    QCoreApplication::processEvents();
    QCOMPARE(m_content->reached, 0);
    QVERIFY(m_answers.isEmpty());
    QVERIFY(sheet->isVisible());
    sheet->dismiss();
    QTest::mouseClick(window, Qt::LeftButton, {}, onScrim);
    QVERIFY(m_content->reached > 0);
}

void SheetTest::shortcutsUnderItAreOff()
{
    auto *action = new QAction(m_window.get());
    action->setShortcut(Qt::CTRL | Qt::Key_R);
    m_window->addAction(action);
    QSignalSpy triggered(action, &QAction::triggered);
    QTest::keyClick(m_window->windowHandle(), Qt::Key_R, Qt::ControlModifier);
    QCOMPARE(triggered.count(), 1);
    const QPointer<Sheet> sheet = present(deletion(m_answers));
    QTest::keyClick(m_window->windowHandle(), Qt::Key_R, Qt::ControlModifier);
    QCOMPARE(triggered.count(), 1);
}

void SheetTest::goesWithItsHost()
{
    const QPointer<Sheet> sheet = present(deletion(m_answers));
    delete m_content;
    QTRY_VERIFY(sheet.isNull());
    QVERIFY(m_answers.isEmpty());
}

void SheetTest::goesWithItsWindow()
{
    const QPointer<Sheet> sheet = present(deletion(m_answers));
    m_window.reset();
    QVERIFY(sheet.isNull());
    QVERIFY(m_answers.isEmpty());
}

void SheetTest::actionMayEndTheWindow()
{
    SheetDescription description = deletion(m_answers);
    description.buttons.last().action = [this] {
        m_window.reset();
        m_answers << QStringLiteral("ended");
    };
    const QPointer<Sheet> sheet = present(description);
    QTest::keyClick(m_window->focusWidget(), Qt::Key_Tab);
    buttonNamed(*sheet, QStringLiteral("Delete All"))->click();
    QVERIFY(sheet.isNull());
    QCOMPARE(m_answers, QStringList(QStringLiteral("ended")));
}

void SheetTest::dismissedSheetHasNoAnswer()
{
    const QPointer<Sheet> sheet = present(deletion(m_answers));
    PushButton *button = buttonNamed(*sheet, QStringLiteral("Delete All"));
    sheet->dismiss();
    button->click();
    QVERIFY(m_answers.isEmpty());
    QTRY_VERIFY(sheet.isNull());
    QVERIFY(m_field->hasFocus());
}

void SheetTest::secondSheetKeepsTheFocus()
{
    const QPointer<Sheet> first = present(deletion(m_answers));
    const QPointer<Sheet> second = present(copied(QStringLiteral("3 screenshots copied to your clipboard")));
    QVERIFY(buttonNamed(*second, QStringLiteral("OK"))->hasFocus());
    QTest::keyClick(m_window->focusWidget(), Qt::Key_Escape);
    QVERIFY(buttonNamed(*first, QStringLiteral("Cancel"))->hasFocus());
    QVERIFY(m_answers.isEmpty());
}

void SheetTest::isADialogForAssistivePrograms()
{
    const QPointer<Sheet> sheet = present(deletion(m_answers));
    QAccessibleInterface *accessible = QAccessible::queryAccessibleInterface(sheet.data());
    QVERIFY(accessible != nullptr);
    QCOMPARE(accessible->role(), QAccessible::Dialog);
    QCOMPARE(accessible->text(QAccessible::Name), QStringLiteral("Delete Selected Screenshots"));
    QCOMPARE(
        accessible->text(QAccessible::Description),
        QStringLiteral("Are you sure you want to move 3 screenshots to the Trash?"));
    QVERIFY(accessible->state().modal);
    QVERIFY(!QAccessible::queryAccessibleInterface(m_content)->state().modal);
}

QTEST_MAIN(SheetTest)
#include "SheetTest.moc"
