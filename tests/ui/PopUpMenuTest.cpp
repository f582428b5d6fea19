#include "PopUpMenu.h"
#include "Symbols.h"
#include "Theme.h"
#include "savePicture.h"

#include <QGuiApplication>
#include <QHelpEvent>
#include <QScreen>
#include <QSignalSpy>
#include <QTest>
#include <QToolTip>

namespace {

/// The main menu as the program has it.
void fill(PopUpMenu &menu)
{
    const auto add = [&menu](const char *title, const char *symbol, const QKeySequence &key) {
        QAction *action = menu.addAction(QString::fromUtf8(title));
        action->setShortcut(key);
        if (*symbol != '\0') {
            action->setIcon(Symbols::icon(QString::fromLatin1(symbol)));
        }
    };
    add("Gallery", "photo.on.rectangle.angled", Qt::CTRL | Qt::Key_G);
    menu.addSeparator();
    add("Deletion Timeframe", "timer", Qt::CTRL | Qt::Key_T);
    add("Settings", "gearshape", Qt::CTRL | Qt::Key_Comma);
    add("Check for Updates…", "arrow.triangle.2.circlepath", {});
    menu.addSeparator();
    add("Quit Deskbroom", "", Qt::CTRL | Qt::Key_Q);
}

QAction *actionNamed(const PopUpMenu &menu, const QString &text)
{
    const QList<QAction *> actions = menu.actions();
    const auto found =
        std::ranges::find_if(actions, [&text](const QAction *action) { return action->text() == text; });
    return found == actions.end() ? nullptr : *found;
}

constexpr QRect itemInUpperPanel(100, 0, 32, 32);

} // namespace

class PopUpMenuTest final : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void hasTheGivenMeasures();
    void growsWithItsTexts();
    void timeframeMenuMarksTheChoice();
    void highlightedRowHasTheAccent();
    void keyEquivalentsActWhileItIsOpen_data();
    void keyEquivalentsActWhileItIsOpen();
    void keysReachBothEnds_data();
    void keysReachBothEnds();
    void disabledActionIgnoresItsKey();
    void disabledActionShowsItsTooltip();
    void staysInsideTheScreen();
    void shadowMovesNothing();
    void hasAWindowOnlyUntilAMomentAfterItIsClosed();
};

void PopUpMenuTest::hasTheGivenMeasures()
{
    PopUpMenu menu(248);
    fill(menu);
    menu.popUpBeside(itemInUpperPanel, PopoverAppearance::Shadow::None);
    // A wide font makes it wider than asked for.
    QVERIFY(menu.width() >= 248);
    QCOMPARE(menu.height(), 5 + 5 * 30 + 2 * 11 + 5);
    const QRect gallery = menu.actionGeometry(menu.actions().constFirst());
    QCOMPARE(gallery, QRect(5, 5, menu.width() - 10, 30));
    QCOMPARE(menu.pos(), QPoint(100, 34));
    menu.setActiveAction(menu.actions().constFirst());
    savePicture(menu, QStringLiteral("menu-main"));
}

void PopUpMenuTest::growsWithItsTexts()
{
    PopUpMenu menu(176);
    menu.addAction(QStringLiteral("5 minutes"));
    QCOMPARE(menu.sizeHint().width(), 176);
    menu.addAction(QStringLiteral("A choice whose words take a good deal more room than the others"));
    const int width = menu.fontMetrics().horizontalAdvance(menu.actions().constLast()->text());
    QCOMPARE(menu.sizeHint().width(), 5 + 35 + width + 10 + 5);
}

void PopUpMenuTest::timeframeMenuMarksTheChoice()
{
    PopUpMenu menu(176);
    for (const int minutes : {1, 5, 10, 30, 60}) {
        const QLatin1String unit(minutes == 1 ? " minute" : " minutes");
        QAction *action = menu.addAction(QString::number(minutes) + unit);
        action->setCheckable(true);
        action->setChecked(minutes == 5);
    }
    menu.popUpBeside(itemInUpperPanel, PopoverAppearance::Shadow::None);
    QCOMPARE(menu.size(), QSize(176, 160));
    const QImage image = menu.grab().toImage();
    const auto inkInColumn = [&image, &menu](int row) {
        int ink = 0;
        const QRect rect = menu.actionGeometry(menu.actions().at(row));
        const qreal scale = image.devicePixelRatio();
        for (int y = rect.top() + 2; y < rect.bottom() - 2; ++y) {
            for (int x = rect.left() + 8; x < rect.left() + 26; ++x) {
                const QColor pixel = image.pixelColor(QPointF(x * scale, y * scale).toPoint());
                ink += pixel == Theme::current().popover ? 0 : 1;
            }
        }
        return ink;
    };
    QVERIFY(inkInColumn(1) > 10);
    QCOMPARE(inkInColumn(0), 0);
    QCOMPARE(inkInColumn(2), 0);
    menu.setActiveAction(menu.actions().at(2));
    savePicture(menu, QStringLiteral("menu-timeframe"));
}

void PopUpMenuTest::highlightedRowHasTheAccent()
{
    PopUpMenu menu(248);
    fill(menu);
    menu.popUpBeside(itemInUpperPanel, PopoverAppearance::Shadow::None);
    QAction *settings = actionNamed(menu, QStringLiteral("Settings"));
    menu.setActiveAction(settings);
    const QImage image = menu.grab().toImage();
    const auto colorAtLeftOf = [&image, &menu](QAction *action) {
        const QRect row = menu.actionGeometry(action);
        return image.pixelColor(QPoint(row.left() + 3, row.center().y()) * qRound(image.devicePixelRatio()));
    };
    QCOMPARE(colorAtLeftOf(settings), Theme::current().accent);
    QCOMPARE(colorAtLeftOf(menu.actions().constFirst()), Theme::current().popover);
}

void PopUpMenuTest::keyEquivalentsActWhileItIsOpen_data()
{
    QTest::addColumn<Qt::Key>("key");
    QTest::addColumn<QString>("text");
    QTest::newRow("Ctrl+G") << Qt::Key_G << QStringLiteral("Gallery");
    QTest::newRow("Ctrl+T") << Qt::Key_T << QStringLiteral("Deletion Timeframe");
    QTest::newRow("Ctrl+,") << Qt::Key_Comma << QStringLiteral("Settings");
    QTest::newRow("Ctrl+Q") << Qt::Key_Q << QStringLiteral("Quit Deskbroom");
}

void PopUpMenuTest::keyEquivalentsActWhileItIsOpen()
{
    QFETCH(const Qt::Key, key);
    QFETCH(const QString, text);
    PopUpMenu menu(248);
    fill(menu);
    menu.popUpBeside(itemInUpperPanel, PopoverAppearance::Shadow::None);
    QSignalSpy chosen(&menu, &QMenu::triggered);
    QSignalSpy triggered(actionNamed(menu, text), &QAction::triggered);
    QTest::keyClick(&menu, key, Qt::ControlModifier);
    QCOMPARE(triggered.count(), 1);
    QCOMPARE(chosen.count(), 1);
    QVERIFY(!menu.isVisible());
}

void PopUpMenuTest::keysReachBothEnds_data()
{
    QTest::addColumn<Qt::Key>("key");
    QTest::addColumn<QString>("text");
    QTest::newRow("home") << Qt::Key_Home << QStringLiteral("Gallery");
    QTest::newRow("page up") << Qt::Key_PageUp << QStringLiteral("Gallery");
    QTest::newRow("end") << Qt::Key_End << QStringLiteral("Quit Deskbroom");
    QTest::newRow("page down") << Qt::Key_PageDown << QStringLiteral("Quit Deskbroom");
}

void PopUpMenuTest::keysReachBothEnds()
{
    QFETCH(const Qt::Key, key);
    QFETCH(const QString, text);
    PopUpMenu menu(248);
    menu.addSeparator();
    fill(menu);
    menu.addSeparator();
    menu.popUpBeside(itemInUpperPanel, PopoverAppearance::Shadow::None);
    QSignalSpy chosen(&menu, &QMenu::triggered);
    QAction *const middle = actionNamed(menu, QStringLiteral("Settings"));
    for (QAction *const from : QList<QAction *>{nullptr, middle, actionNamed(menu, text)}) {
        menu.setActiveAction(from);
        QTest::keyClick(&menu, key);
        QCOMPARE(menu.activeAction(), actionNamed(menu, text));
    }
    QVERIFY(menu.isVisible());
    QCOMPARE(chosen.count(), 0);
}

void PopUpMenuTest::disabledActionIgnoresItsKey()
{
    PopUpMenu menu(248);
    fill(menu);
    QAction *gallery = menu.actions().constFirst();
    gallery->setEnabled(false);
    menu.popUpBeside(itemInUpperPanel, PopoverAppearance::Shadow::None);
    QSignalSpy triggered(gallery, &QAction::triggered);
    QTest::keyClick(&menu, Qt::Key_G, Qt::ControlModifier);
    QCOMPARE(triggered.count(), 0);
    QVERIFY(menu.isVisible());
}

void PopUpMenuTest::disabledActionShowsItsTooltip()
{
    PopUpMenu menu(248);
    fill(menu);
    QAction *gallery = menu.actions().constFirst();
    gallery->setEnabled(false);
    gallery->setToolTip(QStringLiteral("There is nothing to show yet."));
    menu.popUpBeside(itemInUpperPanel, PopoverAppearance::Shadow::None);
    const QPoint middle = menu.actionGeometry(gallery).center();
    QHelpEvent help(QEvent::ToolTip, middle, menu.mapToGlobal(middle));
    QCoreApplication::sendEvent(&menu, &help);
    QCOMPARE(QToolTip::text(), gallery->toolTip());
    savePicture(menu, QStringLiteral("menu-disabled"));
}

void PopUpMenuTest::staysInsideTheScreen()
{
    const QRect screen = QGuiApplication::primaryScreen()->availableGeometry();
    for (const PopoverAppearance::Shadow shadow :
         {PopoverAppearance::Shadow::None, PopoverAppearance::Shadow::Drawn}) {
        for (const QPoint &corner :
             {screen.topLeft(), screen.topRight(), screen.bottomLeft(), screen.bottomRight()}) {
            PopUpMenu menu(248);
            fill(menu);
            menu.popUpBeside(QRect(corner - QPoint(10, 10), QSize(20, 20)), shadow);
            const QRect body = menu.body().translated(menu.pos());
            QVERIFY(screen.contains(body));
        }
    }
}

void PopUpMenuTest::shadowMovesNothing()
{
    PopUpMenu menu(248);
    fill(menu);
    menu.popUpBeside(itemInUpperPanel, PopoverAppearance::Shadow::Drawn);
    QCOMPARE(menu.body().translated(menu.pos()).topLeft(), QPoint(100, 34));
    QCOMPARE(menu.body().height(), 182);
    QVERIFY(menu.width() > menu.body().width());
    QVERIFY(menu.mask().isEmpty());
    savePicture(menu, QStringLiteral("menu-shadow"));
    // A press on the shadow is a press beside the menu.
    QTest::mousePress(&menu, Qt::LeftButton, {}, QPoint(5, 60));
    QVERIFY(!menu.isVisible());
}

void PopUpMenuTest::hasAWindowOnlyUntilAMomentAfterItIsClosed()
{
    PopUpMenu menu(248);
    fill(menu);
    for (int round = 0; round < 2; ++round) {
        menu.popUpBeside(itemInUpperPanel, PopoverAppearance::Shadow::None);
        QTest::keyPress(&menu, Qt::Key_Escape);
        QVERIFY(!menu.isVisible());
        // The key's release is still to come.
        QCoreApplication::sendPostedEvents();
        QVERIFY(menu.windowHandle() != nullptr);
        QTRY_VERIFY(menu.windowHandle() == nullptr);
    }
    menu.popUpBeside(itemInUpperPanel, PopoverAppearance::Shadow::None);
    menu.close();
    menu.popUpBeside(itemInUpperPanel, PopoverAppearance::Shadow::None);
    QSignalSpy closed(&menu, &QMenu::aboutToHide);
    QVERIFY2(!closed.wait(1500), "a menu that was opened again meanwhile stays");
    QVERIFY(menu.isVisible());
}

QTEST_MAIN(PopUpMenuTest)
#include "PopUpMenuTest.moc"
