#include "Popover.h"
#include "PopoverFrame.h"
#include "SheetFixture.h"
#include "TextLabel.h"
#include "Theme.h"
#include "rendering.h"
#include "savePicture.h"

namespace {

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

/// Where a sheet and its parts lie, and what they look like.
class SheetLookTest final : public SheetFixture {
    Q_OBJECT

private Q_SLOTS:

    void init() { makeWindow(); }

    void cleanup() { m_window.reset(); }

    void hasTheGivenMeasures();
    void isNarrowInNarrowWindows();
    void scrimCoversTheWindow_data();
    void scrimCoversTheWindow();
    void coversAPopoverWithItsArrow();
    void followsItsWindow();
    void staysInsideALowWindow();
    void comesWithAFade();
    void fileNameStaysInOnePiece();
    void longNameLeavesTheSentenceItsEnd();
    void nameDoesNotTurnTheSentenceRound();
    void longMessagesFit_data();
    void longMessagesFit();
    void isMirroredFromRightToLeft();
};

void SheetLookTest::hasTheGivenMeasures()
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

void SheetLookTest::isNarrowInNarrowWindows()
{
    m_window->resize(399, 600);
    const QPointer<Sheet> sheet = present(deletion(m_answers));
    QCOMPARE(cardOf(*sheet).width(), 248);
    m_window->resize(400, 600);
    QCOMPARE(cardOf(*sheet).width(), 320);
}

void SheetLookTest::scrimCoversTheWindow_data()
{
    QTest::addColumn<ScopedLook::Look>("look");
    QTest::newRow("light") << ScopedLook::Look::Light;
    QTest::newRow("dark") << ScopedLook::Look::Dark;
}

void SheetLookTest::scrimCoversTheWindow()
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

void SheetLookTest::coversAPopoverWithItsArrow()
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

void SheetLookTest::followsItsWindow()
{
    const QPointer<Sheet> sheet = present(deletion(m_answers));
    m_window->resize(900, 660);
    QCOMPARE(sheet->size(), QSize(900, 660));
    QCOMPARE(cardOf(*sheet), QRect(290, 220, 320, 184));
}

void SheetLookTest::staysInsideALowWindow()
{
    m_window->resize(500, 230);
    const QPointer<Sheet> sheet = present(deletion(m_answers));
    QCOMPARE(cardOf(*sheet).bottom() + 1, 230 - 16);
    m_window->resize(500, 150);
    QCOMPARE(cardOf(*sheet).top(), 0);
}

void SheetLookTest::comesWithAFade()
{
    const QPointer<Sheet> sheet = present(deletion(m_answers));
    QVERIFY(!hasAppeared(*sheet));
    QCOMPARE(colorAt(rendered(*sheet), {600, 310}).alpha(), 0);
    QTRY_COMPARE(colorAt(rendered(*sheet), {600, 310}), Theme::current().popover);
    QTRY_VERIFY(hasAppeared(*sheet));
}

void SheetLookTest::fileNameStaysInOnePiece()
{
    m_window->resize(280, 355);
    const QPointer<Sheet> sheet = present(copied(
        QStringLiteral("'Screenshot from 2024-11-14 09-41-07.png' has been copied to your clipboard")));
    QCOMPARE(cardOf(*sheet).height(), 200);
    QTRY_VERIFY(hasAppeared(*sheet));
    savePicture(*m_window, QStringLiteral("sheet-copied"));
}

void SheetLookTest::longNameLeavesTheSentenceItsEnd()
{
    m_window->resize(280, 355);
    const QString name = QStringLiteral("'Screenshot ") + QStringLiteral("with many words ").repeated(14);
    const auto drawn = [this, &name](const QString &end) {
        const QPointer<Sheet> sheet = present(copied(name + end));
        const QImage image = rendered(*sheet->findChildren<TextLabel *>().constLast());
        return sheet->accessibleDescription() == name + end ? image : QImage();
    };
    const QImage whole = drawn(QStringLiteral(".png' has been copied to your clipboard"));
    QCOMPARE(whole.size(), QSize(208, 8 * 16));
    QVERIFY(drawn(QStringLiteral(".png' has been copied to your ")) != whole);
}

void SheetLookTest::nameDoesNotTurnTheSentenceRound()
{
    const auto drawn = [this](const QString &name) {
        const QString message = u'\'' + name + QStringLiteral("' has been copied");
        const QPointer<Sheet> sheet = present(copied(message));
        TextLabel &label = *sheet->findChildren<TextLabel *>().constLast();
        label.setAlignment(Qt::AlignRight);
        // What follows the name, at the right.
        const int width = QFontMetrics(label.font()).horizontalAdvance(QStringLiteral("' has been copied"));
        const QRect end(label.width() - width, 0, width, label.height());
        return sheet->accessibleDescription() == message ? rendered(label).copy(end) : QImage();
    };
    const QImage end = drawn(QStringLiteral("Screenshot.png"));
    QCOMPARE(end.height(), 16);
    QCOMPARE(drawn(QStringLiteral("Screenshot \u202Egnp.exe")), end);
    QCOMPARE(drawn(QStringLiteral("\u05E9\u05DC\u05D5\u05DD.png")), end);
}

void SheetLookTest::longMessagesFit_data()
{
    QTest::addColumn<QString>("message");
    QTest::newRow("one word of 255 letters") << QString(255, QChar(u'm'));
    QTest::newRow("many words") << QStringLiteral("word ").repeated(300);
    QTest::newRow("line breaks") << QStringLiteral("line\n").repeated(300);
    QTest::newRow("markup") << QStringLiteral("<b>bold</b> ").repeated(100);
    QTest::newRow("right to left") << QStringLiteral("שלום עולם ").repeated(100);
}

void SheetLookTest::longMessagesFit()
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

void SheetLookTest::isMirroredFromRightToLeft()
{
    m_window->setLayoutDirection(Qt::RightToLeft);
    const QPointer<Sheet> sheet = present(deletion(m_answers));
    const QRect cancel = boxOf(*sheet, *buttonNamed(*sheet, QStringLiteral("Cancel")));
    const QRect remove = boxOf(*sheet, *buttonNamed(*sheet, QStringLiteral("Delete All")));
    QVERIFY(remove.right() < cancel.left());
}

QTEST_MAIN(SheetLookTest)
#include "SheetLookTest.moc"
