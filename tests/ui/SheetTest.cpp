#include "Sheet.h"
#include "Popover.h"
#include "PopoverFrame.h"
#include "TextLabel.h"
#include "Theme.h"
#include "rendering.h"
#include "savePicture.h"

#include <QAccessible>
#include <QApplication>
#include <QLayout>
#include <QLineEdit>
#include <QSignalSpy>
#include <QTest>

namespace {

using Role = SheetButton::Role;
using Kind = PushButton::Kind;

/// Notes what reaches it.
class Content final : public QWidget {
public:
    using QWidget::QWidget;

    [[nodiscard]] QSize sizeHint() const override { return {280, 355}; }

    int reached = 0;

protected:
    bool event(QEvent *event) override
    {
        switch (event->type()) {
        case QEvent::MouseButtonPress:
        case QEvent::Wheel:
        case QEvent::KeyPress:
        case QEvent::ContextMenu:
            ++reached;
            break;
        default:
            break;
        }
        return QWidget::event(event);
    }
};

SheetDescription deletion(QStringList &answers)
{
    return {
        .symbol = QStringLiteral("trash"),
        .tone = SheetDescription::Tone::Red,
        .title = QStringLiteral("Delete Selected Screenshots"),
        .message = QStringLiteral("Are you sure you want to move 3 screenshots to the Trash?"),
        .buttons = {
            {.kind = Kind::Bordered,
             .text = QStringLiteral("Cancel"),
             .action = [&answers] { answers << QStringLiteral("cancel"); },
             .role = Role::Cancel},
            {.kind = Kind::Destructive,
             .text = QStringLiteral("Delete All"),
             .action = [&answers] { answers << QStringLiteral("delete"); }},
        }};
}

SheetDescription copied(const QString &message)
{
    return {
        .symbol = QStringLiteral("doc.on.clipboard"),
        .title = QStringLiteral("Screenshot Copied"),
        .message = message,
        .buttons = {{.kind = Kind::Prominent, .text = QStringLiteral("OK")}}};
}

PushButton *buttonNamed(const Sheet &sheet, const QString &text)
{
    const QList<PushButton *> buttons = sheet.findChildren<PushButton *>();
    const auto found =
        std::ranges::find_if(buttons, [&text](const PushButton *button) { return button->text() == text; });
    return found == buttons.end() ? nullptr : *found;
}

/// The card in the coordinates of the window: what the labels and buttons stand on.
QRect cardOf(const Sheet &sheet)
{
    return sheet.findChild<TextLabel *>()->parentWidget()->geometry();
}

QRect boxOf(const Sheet &sheet, const PushButton &button)
{
    constexpr int outset = PushButton::outset;
    const QRect box(button.mapTo(&sheet, QPoint()), button.size());
    return box.adjusted(outset, outset, -outset, -outset);
}

bool hasAppeared(const Sheet &sheet)
{
    return sheet.findChild<TextLabel *>()->parentWidget()->graphicsEffect() == nullptr;
}

} // namespace

class SheetTest final : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();

    void hasTheGivenMeasures();
    void isNarrowInNarrowWindows();
    void scrimCoversTheWindow_data();
    void scrimCoversTheWindow();
    void coversAPopoverWithItsArrow();
    void followsItsWindow();
    void staysInsideALowWindow();
    void comesWithAFade();
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
    void fileNameStaysInOnePiece();
    void longMessagesFit_data();
    void longMessagesFit();
    void isMirroredFromRightToLeft();
    void isADialogForAssistivePrograms();

private:
    [[nodiscard]] QPointer<Sheet> present(const SheetDescription &description)
    {
        return Sheet::present(*m_content, description);
    }

    std::unique_ptr<QWidget> m_window;
    Content *m_content = nullptr;
    QLineEdit *m_field = nullptr;
    QStringList m_answers;
};

void SheetTest::init()
{
    m_answers.clear();
    m_window = std::make_unique<QWidget>();
    m_window->resize(1200, 900);
    m_content = new Content(m_window.get());
    m_content->setGeometry(m_window->rect());
    m_content->setFocusPolicy(Qt::StrongFocus);
    m_field = new QLineEdit(m_content);
    m_window->show();
    m_window->activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(m_window.get()));
    m_field->setFocus();
    QTRY_VERIFY(m_field->hasFocus());
}

void SheetTest::cleanup()
{
    m_window.reset();
}

void SheetTest::hasTheGivenMeasures()
{
    const QPointer<Sheet> sheet = present(deletion(m_answers));
    QCOMPARE(sheet->geometry(), m_window->rect());
    QCOMPARE(cardOf(*sheet), QRect(440, 300, 320, 184));
    QCOMPARE(boxOf(*sheet, *buttonNamed(*sheet, QStringLiteral("Cancel"))), QRect(460, 436, 136, 28));
    QCOMPARE(boxOf(*sheet, *buttonNamed(*sheet, QStringLiteral("Delete All"))), QRect(604, 436, 136, 28));
    const QList<TextLabel *> labels = sheet->findChildren<TextLabel *>();
    QCOMPARE(labels.size(), 2);
    QCOMPARE(labels[0]->mapTo(sheet.data(), QPoint()).y(), 300 + 20 + 32 + 12);
    QCOMPARE(labels[1]->mapTo(sheet.data(), QPoint()).y(), 300 + 20 + 32 + 12 + 16 + 6);
    QTRY_VERIFY(hasAppeared(*sheet));
    savePicture(*m_window, QStringLiteral("sheet-delete"));
}

void SheetTest::isNarrowInNarrowWindows()
{
    m_window->resize(399, 600);
    const QPointer<Sheet> sheet = present(deletion(m_answers));
    QCOMPARE(cardOf(*sheet).width(), 248);
    m_window->resize(400, 600);
    QCOMPARE(cardOf(*sheet).width(), 320);
}

void SheetTest::scrimCoversTheWindow_data()
{
    QTest::addColumn<ScopedLook::Look>("look");
    QTest::newRow("light") << ScopedLook::Look::Light;
    QTest::newRow("dark") << ScopedLook::Look::Dark;
}

void SheetTest::scrimCoversTheWindow()
{
    QFETCH(const ScopedLook::Look, look);
    const ScopedLook scoped(look);
    const QPointer<Sheet> sheet = present(deletion(m_answers));
    QTRY_VERIFY(hasAppeared(*sheet));
    const QColor dimmed = composited(Theme::current().scrim, Qt::white);
    for (const qreal ratio : pixelRatios) {
        const QImage image = rendered(*sheet, ratio, Qt::white);
        QVERIFY(isNearly(colorAt(image, {1, 1}), dimmed));
        QVERIFY(isNearly(colorAt(image, {1198, 898}), dimmed));
        // Inside a corner of the card, beside its symbol; beyond the corner's bend is its shadow.
        QVERIFY(isNearly(colorAt(image, {446, 306}), Theme::current().popover));
        QVERIFY(isNearly(colorAt(image, {600, 310}), Theme::current().popover));
        QVERIFY(!isNearly(colorAt(image, {440.5, 300.5}), Theme::current().popover, 8));
        // The cancel button's face, with the focus ring around it.
        QVERIFY(isNearly(colorAt(image, {470, 440}), Theme::current().face));
        QVERIFY(!isNearly(colorAt(image, {530, 433.5}), Theme::current().popover, 8));
        QVERIFY(isNearly(colorAt(image, {610, 450}), Theme::current().red));
    }
}

void SheetTest::coversAPopoverWithItsArrow()
{
    Popover popover(Popover::Behavior::ApplicationDefined, std::make_unique<PopoverFrame>());
    auto view = std::make_unique<Content>();
    Content *content = view.get();
    popover.show(
        std::move(view), {.rectangle = {300, 0, 24, 24},
                          .arrow = PopoverAnchor::Arrow::PointsAtRectangle,
                          .screen = {0, 0, 800, 800},
                          .availableArea = {0, 24, 800, 776}});
    const QPointer<Sheet> sheet = Sheet::present(*content, deletion(m_answers));
    QTRY_VERIFY(hasAppeared(*sheet));
    QCOMPARE(sheet->parentWidget(), popover.window());
    const QPainterPath outline = Popover::outlineOf(*popover.window());
    QVERIFY(!outline.isEmpty());
    const QRect body(content->mapTo(popover.window(), QPoint()), content->size());
    // A third of the way down, where the arrow counts.
    QCOMPARE(
        cardOf(*sheet).top(), qRound(outline.boundingRect().top() + outline.boundingRect().height() / 3));
    QCOMPARE(cardOf(*sheet).left(), body.left() + 16);
    QCOMPARE(cardOf(*sheet).width(), 248);
    for (const qreal ratio : pixelRatios) {
        const QImage image = rendered(*sheet, ratio);
        const auto alphaAt = [&image](QPointF point) { return colorAt(image, point).alpha(); };
        QCOMPARE(alphaAt(body.topLeft() + QPoint(1, 1)), 0);
        QCOMPARE(alphaAt({1, 1}), 0);
        QVERIFY(isNearly(colorAt(image, body.topLeft() + QPoint(20, 20)), Theme::current().scrim));
        // In the arrow.
        const QPointF inArrow(outline.boundingRect().center().x(), outline.boundingRect().top() + 6);
        if (outline.contains(inArrow)) {
            QVERIFY(isNearly(colorAt(image, inArrow), Theme::current().scrim));
        }
    }
    popover.close();
    QVERIFY(m_answers.isEmpty());
}

void SheetTest::followsItsWindow()
{
    const QPointer<Sheet> sheet = present(deletion(m_answers));
    m_window->resize(900, 660);
    QCOMPARE(sheet->size(), QSize(900, 660));
    QCOMPARE(cardOf(*sheet), QRect(290, 220, 320, 184));
}

void SheetTest::staysInsideALowWindow()
{
    m_window->resize(500, 230);
    const QPointer<Sheet> sheet = present(deletion(m_answers));
    QCOMPARE(cardOf(*sheet).bottom() + 1, 230 - 16);
    m_window->resize(500, 150);
    QCOMPARE(cardOf(*sheet).top(), 0);
}

void SheetTest::comesWithAFade()
{
    const QPointer<Sheet> sheet = present(deletion(m_answers));
    QVERIFY(!hasAppeared(*sheet));
    QCOMPARE(colorAt(rendered(*sheet), {600, 310}).alpha(), 0);
    QTRY_COMPARE(colorAt(rendered(*sheet), {600, 310}), Theme::current().popover);
    QTRY_VERIFY(hasAppeared(*sheet));
}

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

void SheetTest::fileNameStaysInOnePiece()
{
    m_window->resize(280, 355);
    const QPointer<Sheet> sheet = present(copied(
        QStringLiteral("'Screenshot from 2024-11-14 09-41-07.png' has been copied to your clipboard")));
    QCOMPARE(cardOf(*sheet).height(), 200);
    QTRY_VERIFY(hasAppeared(*sheet));
    savePicture(*m_window, QStringLiteral("sheet-copied"));
}

void SheetTest::longMessagesFit_data()
{
    QTest::addColumn<QString>("message");
    QTest::newRow("one word of 255 letters") << QString(255, QChar(u'm'));
    QTest::newRow("many words") << QStringLiteral("word ").repeated(300);
    QTest::newRow("line breaks") << QStringLiteral("line\n").repeated(300);
    QTest::newRow("markup") << QStringLiteral("<b>bold</b> ").repeated(100);
    QTest::newRow("right to left") << QStringLiteral("שלום עולם ").repeated(100);
}

void SheetTest::longMessagesFit()
{
    QFETCH(const QString, message);
    m_window->resize(280, 355);
    const QPointer<Sheet> sheet = present(copied(message));
    QTRY_VERIFY(hasAppeared(*sheet));
    QVERIFY(m_window->rect().contains(cardOf(*sheet)));
    QCOMPARE(cardOf(*sheet).height(), 20 + 32 + 12 + 16 + 6 + 8 * 16 + 18 + 28 + 20);
    // Nothing of the text stands in the card's padding.
    const QImage image = rendered(*sheet, 2, Qt::white);
    const QRect card = cardOf(*sheet);
    for (int y = card.top() + 90; y < card.top() + 200; ++y) {
        QVERIFY(isNearly(colorAt(image, QPointF(card.left() + 10, y)), Theme::current().popover));
        QVERIFY(isNearly(colorAt(image, QPointF(card.right() - 10, y)), Theme::current().popover));
    }
    savePicture(*m_window, QStringLiteral("sheet-") + QString::fromUtf8(QTest::currentDataTag()));
}

void SheetTest::isMirroredFromRightToLeft()
{
    m_window->setLayoutDirection(Qt::RightToLeft);
    const QPointer<Sheet> sheet = present(deletion(m_answers));
    const QRect cancel = boxOf(*sheet, *buttonNamed(*sheet, QStringLiteral("Cancel")));
    const QRect remove = boxOf(*sheet, *buttonNamed(*sheet, QStringLiteral("Delete All")));
    QVERIFY(remove.right() < cancel.left());
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
