#include "PopUpButton.h"

#include "PopUpMenu.h"
#include "Theme.h"
#include "menus.h"
#include "rendering.h"
#include "savePicture.h"

#include <QAccessible>
#include <QHBoxLayout>
#include <QSignalSpy>
#include <QTest>

namespace {

constexpr int width = 130;
const QStringList choices{
    QStringLiteral("1 minute"), QStringLiteral("5 minutes"), QStringLiteral("10 minutes")};

PopUpMenu *openMenu(const PopUpButton &button)
{
    for (PopUpMenu *const menu : button.findChildren<PopUpMenu *>()) {
        if (menu->isVisible()) {
            return menu;
        }
    }
    return nullptr;
}

} // namespace

class PopUpButtonTest final : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void hasTheGivenMeasures();
    void looksLikeABorderedButton_data();
    void looksLikeABorderedButton();
    void menuHoldsTheChoicesWithACheckMarkAtTheShownOne();
    void textThatIsNoChoiceChecksNone();
    void choosingTells();
    void closingWithoutAChoiceTellsNothing();
    void keysOpenTheMenuAtTheShownChoice_data();
    void keysOpenTheMenuAtTheShownChoice();
    void isPressedWhileTheMenuIsOpen();
    void longTextIsElidedAndTheToolTip();
    void isAMenuButtonForAssistivePrograms();
};

void PopUpButtonTest::hasTheGivenMeasures()
{
    const PopUpButton button(choices, width);
    constexpr int outset = PopUpButton::outset;
    QCOMPARE(button.sizeHint(), QSize(130 + 2 * outset, 26 + 2 * outset));
}

void PopUpButtonTest::looksLikeABorderedButton_data()
{
    QTest::addColumn<ScopedLook::Look>("look");
    QTest::newRow("light") << ScopedLook::Look::Light;
    QTest::newRow("dark") << ScopedLook::Look::Dark;
}

void PopUpButtonTest::looksLikeABorderedButton()
{
    QFETCH(const ScopedLook::Look, look);
    const ScopedLook scoped(look);
    const Theme &theme = Theme::current();
    PopUpButton button(choices, width);
    button.setShownText(choices[1]);
    button.resize(button.sizeHint());
    for (const qreal ratio : pixelRatios) {
        const QImage image = rendered(button, ratio, theme.window);
        QVERIFY(isNearly(colorAt(image, {PopUpButton::outset + 5.0, 17}), theme.face));
        QVERIFY(isNearly(colorAt(image, {1, 17}), theme.window));
    }
}

void PopUpButtonTest::menuHoldsTheChoicesWithACheckMarkAtTheShownOne()
{
    PopUpButton button(choices, width);
    button.setShownText(choices[1]);
    button.show();
    QTest::mousePress(&button, Qt::LeftButton);
    PopUpMenu *const menu = openMenu(button);
    QVERIFY(menu != nullptr);
    const QStringList texts = itemsOf(*menu);
    QCOMPARE(texts, choices);
    QCOMPARE(checkedIn(*menu), QStringList(choices[1]));
    savePicture(*menu, QStringLiteral("pop-up-menu"));
}

void PopUpButtonTest::textThatIsNoChoiceChecksNone()
{
    PopUpButton button(choices, width);
    button.setShownText(QStringLiteral("15 minutes"));
    button.show();
    QTest::mousePress(&button, Qt::LeftButton);
    QVERIFY(openMenu(button) != nullptr);
    QCOMPARE(checkedIn(*openMenu(button)), QStringList());
}

void PopUpButtonTest::choosingTells()
{
    PopUpButton button(choices, width);
    button.setShownText(choices[1]);
    button.show();
    QSignalSpy chosen(&button, &PopUpButton::choiceMade);
    QTest::mousePress(&button, Qt::LeftButton);
    PopUpMenu *const menu = openMenu(button);
    QVERIFY(menu != nullptr);
    QTest::mouseClick(menu, Qt::LeftButton, {}, menu->actionGeometry(menu->actions().at(2)).center());
    QCOMPARE(chosen, QList<QVariantList>{{2}});
    // What is shown is its owner's to say.
    QCOMPARE(button.text(), choices[1]);
    QTRY_VERIFY(openMenu(button) == nullptr);
}

void PopUpButtonTest::closingWithoutAChoiceTellsNothing()
{
    PopUpButton button(choices, width);
    button.setShownText(choices[1]);
    button.show();
    QSignalSpy chosen(&button, &PopUpButton::choiceMade);
    QTest::keyClick(&button, Qt::Key_Space);
    QVERIFY(openMenu(button) != nullptr);
    QTest::keyClick(openMenu(button), Qt::Key_Escape);
    QTRY_VERIFY(openMenu(button) == nullptr);
    QCOMPARE(chosen.count(), 0);
    QVERIFY(!button.isDown());
}

void PopUpButtonTest::keysOpenTheMenuAtTheShownChoice_data()
{
    QTest::addColumn<Qt::Key>("key");
    QTest::newRow("space") << Qt::Key_Space;
    QTest::newRow("return") << Qt::Key_Return;
    QTest::newRow("up") << Qt::Key_Up;
    QTest::newRow("down") << Qt::Key_Down;
}

void PopUpButtonTest::keysOpenTheMenuAtTheShownChoice()
{
    QFETCH(const Qt::Key, key);
    PopUpButton button(choices, width);
    button.setShownText(choices[1]);
    button.show();
    QSignalSpy chosen(&button, &PopUpButton::choiceMade);
    QTest::keyClick(&button, key);
    PopUpMenu *const menu = openMenu(button);
    QVERIFY(menu != nullptr);
    QCOMPARE(menu->activeAction()->text(), choices[1]);
    QTest::keyClick(menu, Qt::Key_Down);
    QTest::keyClick(menu, Qt::Key_Return);
    QCOMPARE(chosen, QList<QVariantList>{{2}});
}

void PopUpButtonTest::isPressedWhileTheMenuIsOpen()
{
    PopUpButton button(choices, width);
    button.show();
    QTest::mousePress(&button, Qt::LeftButton);
    QVERIFY(button.isDown());
    openMenu(button)->close();
    QVERIFY(!button.isDown());
}

void PopUpButtonTest::longTextIsElidedAndTheToolTip()
{
    PopUpButton button(choices, width);
    button.setShownText(choices[0]);
    QVERIFY(button.toolTip().isEmpty());
    const QString text = QStringLiteral("1000000000000000 minutes");
    button.setShownText(text);
    QCOMPARE(button.toolTip(), text);
    QCOMPARE(button.sizeHint().width(), 130 + 2 * PopUpButton::outset);
}

void PopUpButtonTest::isAMenuButtonForAssistivePrograms()
{
    PopUpButton button(choices, width);
    button.setAccessibleName(QStringLiteral("Auto-delete after"));
    button.setShownText(choices[1]);
    button.show();
    QAccessibleInterface *const interface = QAccessible::queryAccessibleInterface(&button);
    QCOMPARE(interface->role(), QAccessible::ButtonMenu);
    QCOMPARE(interface->text(QAccessible::Name), QStringLiteral("Auto-delete after"));
    QCOMPARE(interface->text(QAccessible::Description), choices[1]);
    QVERIFY(interface->state().hasPopup);
    QVERIFY(interface->actionInterface()->actionNames().contains(QAccessibleActionInterface::pressAction()));
    interface->actionInterface()->doAction(QAccessibleActionInterface::pressAction());
    QVERIFY(openMenu(button) != nullptr);
}

QTEST_MAIN(PopUpButtonTest)
#include "PopUpButtonTest.moc"
