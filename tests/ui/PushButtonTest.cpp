#include "PushButton.h"
#include "Spinner.h"
#include "Theme.h"
#include "Typography.h"
#include "rendering.h"
#include "savePicture.h"

#include <QAccessible>
#include <QHBoxLayout>
#include <QSignalSpy>
#include <QTest>

namespace {

/// A point of the face where no label is: above the text, in the middle.
constexpr QPoint onFace(30, PushButton::outset + 4);

QColor colorAt(QWidget &widget, QPoint point)
{
    return colorAt(widget.grab().toImage(), point);
}

using Kind = PushButton::Kind;
using Size = PushButton::Size;

/// The columns, in points, where pixels of nearly this colour are: first and last; last < first for none.
std::pair<qreal, qreal> columnsOf(const QImage &image, const QColor &color)
{
    int first = image.width();
    int last = -1;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            if (isNearly(image.pixelColor(x, y), color, 24)) {
                first = qMin(first, x);
                last = qMax(last, x);
            }
        }
    }
    return {first / image.devicePixelRatio(), last / image.devicePixelRatio()};
}

} // namespace

class PushButtonTest final : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void hasTheGivenMeasures_data();
    void hasTheGivenMeasures();
    void everyKindHasItsColors_data();
    void everyKindHasItsColors();
    void plainHasAFaceOnlyUnderThePointer();
    void symbolStandsBeforeTheLabel_data();
    void symbolStandsBeforeTheLabel();
    void spinnerTakesTheSymbolsPlace();
    void longerTextAsksForANewLayout();
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

void PushButtonTest::hasTheGivenMeasures_data()
{
    QTest::addColumn<Kind>("kind");
    QTest::addColumn<Size>("size");
    QTest::addColumn<int>("height");
    QTest::addColumn<int>("padding");
    QTest::addColumn<int>("fontSize");
    QTest::addColumn<int>("symbolSide");
    QTest::newRow("regular") << Kind::Bordered << Size::Regular << 28 << 12 << 13 << 16;
    QTest::newRow("small") << Kind::BorderedDestructive << Size::Small << 26 << 10 << 12 << 14;
    QTest::newRow("question") << Kind::Destructive << Size::Compact << 28 << 12 << 12 << 14;
    QTest::newRow("plain") << Kind::Plain << Size::Regular << 28 << 8 << 13 << 16;
    QTest::newRow("small and plain") << Kind::Plain << Size::Small << 26 << 8 << 12 << 14;
}

void PushButtonTest::hasTheGivenMeasures()
{
    QFETCH(const Kind, kind);
    QFETCH(const Size, size);
    QFETCH(const int, height);
    QFETCH(const int, padding);
    QFETCH(const int, fontSize);
    QFETCH(const int, symbolSide);
    PushButton button(kind, QStringLiteral("Keep"));
    button.setSize(size);
    QCOMPARE(button.font().pixelSize(), fontSize);
    QCOMPARE(button.font().weight(), QFont::Medium);
    QCOMPARE(button.labelWidth(), qCeil(QFontMetricsF(button.font()).horizontalAdvance(button.text())));
    QCOMPARE(button.sizeHint().height(), height + 2 * PushButton::outset);
    QCOMPARE(button.sizeHint().width(), button.labelWidth() + 2 * padding + 2 * PushButton::outset);
    const int textWidth = button.labelWidth();
    button.setSymbol(QStringLiteral("trash"));
    QCOMPARE(button.labelWidth(), symbolSide + 6 + textWidth);
    button.setProgress(true);
    QCOMPARE(button.labelWidth(), 14 + 6 + textWidth);
    button.setProgress(false);
    button.setSymbol(QString());
    QCOMPARE(button.labelWidth(), textWidth);
}

void PushButtonTest::everyKindHasItsColors_data()
{
    QTest::addColumn<ScopedLook::Look>("look");
    QTest::newRow("light") << ScopedLook::Look::Light;
    QTest::newRow("dark") << ScopedLook::Look::Dark;
}

void PushButtonTest::everyKindHasItsColors()
{
    QFETCH(const ScopedLook::Look, look);
    const ScopedLook scoped(look);
    const Theme &theme = Theme::current();

    struct Expectation {
        Kind kind;
        QColor face;
        QColor text;
    };

    const Expectation expectations[]{
        {Kind::Bordered, theme.face, theme.primary},
        {Kind::BorderedDestructive, theme.face, theme.redText},
        {Kind::Prominent, theme.accent, theme.onAccent},
        {Kind::Destructive, theme.red, theme.onAccent},
        {Kind::Plain, theme.popover, theme.blueText},
    };
    for (const Expectation &expected : expectations) {
        for (const qreal ratio : pixelRatios) {
            // Letters with stems that are wide enough for their full colour.
            PushButton button(expected.kind, QStringLiteral("HHHHHHHH"));
            button.setSymbol(QStringLiteral("trash"));
            button.resize(button.sizeHint());
            const QImage image = rendered(button, ratio, theme.popover);
            QVERIFY(isNearly(colorAt(image, onFace), expected.face));
            const auto [first, last] = columnsOf(image, expected.text);
            QVERIFY2(
                first < button.width() / 2.0 && last > button.width() * 0.75,
                qPrintable(expected.text.name()));
        }
    }
}

void PushButtonTest::plainHasAFaceOnlyUnderThePointer()
{
    const Theme &theme = Theme::current();
    PushButton button(Kind::Plain, QStringLiteral("Expand"));
    button.resize(button.sizeHint());
    QCOMPARE(colorAt(rendered(button), onFace).alpha(), 0);
    button.setAttribute(Qt::WA_UnderMouse);
    QVERIFY(isNearly(colorAt(rendered(button), onFace), theme.quietHover));
    button.setDown(true);
    QVERIFY(isNearly(colorAt(rendered(button), onFace), theme.quietPressed));
    button.setDown(false);
    button.setEnabled(false);
    QCOMPARE(colorAt(rendered(button), onFace).alpha(), 0);
}

void PushButtonTest::symbolStandsBeforeTheLabel_data()
{
    QTest::addColumn<Qt::LayoutDirection>("direction");
    QTest::newRow("left to right") << Qt::LeftToRight;
    QTest::newRow("right to left") << Qt::RightToLeft;
}

void PushButtonTest::symbolStandsBeforeTheLabel()
{
    QFETCH(const Qt::LayoutDirection, direction);
    for (const qreal ratio : pixelRatios) {
        // No ink but the symbol's: the text is a blank as wide as some letters.
        PushButton button(Kind::Destructive, QStringLiteral("\u2003\u2003\u2003"));
        button.setLayoutDirection(direction);
        button.setSymbol(QStringLiteral("trash"));
        button.resize(button.sizeHint());
        const auto [first, last] = columnsOf(rendered(button, ratio), Theme::current().onAccent);
        const int start = PushButton::outset + 12;
        const bool mirrored = direction == Qt::RightToLeft;
        const int left = mirrored ? button.width() - start - 16 : start;
        QVERIFY2(
            first >= left && last <= left + 16, qPrintable(QStringLiteral("%1 %2").arg(first).arg(last)));
        QVERIFY(last - first > 8);
    }
}

void PushButtonTest::spinnerTakesTheSymbolsPlace()
{
    PushButton button(Kind::BorderedDestructive, QStringLiteral("Deleting..."));
    button.setSymbol(QStringLiteral("trash"));
    button.show();
    button.resize(button.sizeHint());
    QVERIFY(button.findChild<Spinner *>() == nullptr);
    button.setProgress(true);
    button.resize(button.sizeHint());
    auto *spinner = button.findChild<Spinner *>();
    QVERIFY(spinner != nullptr);
    QVERIFY(spinner->isSpinning());
    QCOMPARE(spinner->geometry(), QRect(PushButton::outset + 12, (button.height() - 14) / 2, 14, 14));
    // A click on it is one on the button.
    QSignalSpy clicked(&button, &PushButton::clicked);
    QVERIFY(button.childAt(spinner->geometry().center()) == nullptr);
    QTest::mouseClick(&button, Qt::LeftButton, {}, spinner->geometry().center());
    QCOMPARE(clicked.count(), 1);
    button.setProgress(false);
    QVERIFY(button.findChild<Spinner *>() == nullptr);
}

void PushButtonTest::longerTextAsksForANewLayout()
{
    QWidget window;
    auto *row = new QHBoxLayout(&window);
    auto *button = new PushButton(Kind::Bordered, QStringLiteral("Load More"), &window);
    row->addWidget(button);
    row->addStretch();
    window.resize(400, 60);
    window.show();
    const int before = button->width();
    button->setText(QStringLiteral("Load More (57 remaining)"));
    QTRY_COMPARE(button->width(), button->sizeHint().width());
    QVERIFY(button->width() > before);
    button->setSymbol(QStringLiteral("arrow.down.circle"));
    QTRY_COMPARE(button->width(), button->sizeHint().width());
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
