#include "OnboardingBackButton.h"
#include "OnboardingPrimaryButton.h"
#include "OnboardingSkipLink.h"
#include "SettingsPortal.h"
#include "Theme.h"
#include "Typography.h"
#include "rendering.h"
#include "savePicture.h"

#include "Appearance.h"

#include <QAccessible>
#include <QKeyEvent>
#include <QSignalSpy>
#include <QTest>
#include <QVBoxLayout>

namespace {

constexpr int outset = OnboardingButton::outset;
/// A point of the face where no label is.
constexpr QPoint onFace(30, outset + 5);
constexpr int primaryWidth = 464 + 2 * outset;

QColor faceOf(QWidget &button, const QColor &ground = Qt::white)
{
    return colorAt(rendered(button, 1, ground), onFace);
}

QColor amberAt(float opacity, const QColor &ground = Qt::white)
{
    QColor amber = Theme::current().amber;
    amber.setAlphaF(opacity);
    return composited(amber, ground);
}

/// How many pixels are nearly of that colour.
int inkCount(const QImage &image, const QColor &color)
{
    int count = 0;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            count += isNearly(image.pixelColor(x, y), color, 12) ? 1 : 0;
        }
    }
    return count;
}

std::unique_ptr<OnboardingPrimaryButton> makePrimary(const QString &text = QStringLiteral("Get Started"))
{
    auto button = std::make_unique<OnboardingPrimaryButton>(text);
    button->resize(primaryWidth, button->sizeHint().height());
    return button;
}

} // namespace

/// The first-run pages' own buttons.
class OnboardingButtonsTest final : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void primaryHasTheGivenMeasures();
    void primaryShowsThroughUntilItIsReleased();
    void primaryIsBrighterUnderThePointer();
    void primaryLabelIsWhiteWithASoftShadow();
    void primaryLabelIsDarkWhereMoreContrastIsWanted();
    void disabledPrimarySaysThatItIsDone_data();
    void disabledPrimarySaysThatItIsDone();
    void primaryHasARingOfItsOwnColor();
    void longPrimaryTextIsTheTooltip();
    void linkIsPaleWhilePressed();
    void linkIsDarkerUnderThePointer();
    void linkHasTheGivenMeasures();
    void backCanBeHitAroundItsChevron();
    void backPointsAgainstTheReadingDirection();
    void keysPressOnceForEachTime_data();
    void keysPressOnceForEachTime();
    void areButtonsForAssistivePrograms();
    void picture();
};

void OnboardingButtonsTest::primaryHasTheGivenMeasures()
{
    const auto button = makePrimary();
    QCOMPARE(button->height(), 41 + 2 * outset);
    QCOMPARE(button->font().pixelSize(), 14);
    QCOMPARE(button->font().weight(), QFont::DemiBold);
    const QImage image = rendered(*button);
    QVERIFY(isNearly(colorAt(image, {outset + 0.0, button->height() / 2.0}), Theme::current().amber));
    QCOMPARE(colorAt(image, {outset - 1.0, button->height() / 2.0}).alpha(), 0);
    // The corner is cut off.
    QCOMPARE(colorAt(image, {outset + 0.0, outset + 0.0}).alpha(), 0);
    QSignalSpy clicked(button.get(), &OnboardingPrimaryButton::clicked);
    QTest::mouseClick(button.get(), Qt::LeftButton, {}, QPoint(1, 1));
    QCOMPARE(clicked.count(), 0);
}

void OnboardingButtonsTest::primaryShowsThroughUntilItIsReleased()
{
    const auto button = makePrimary();
    button->show();
    for (const QColor &ground : {QColor(Qt::white), QColor(Qt::black)}) {
        QTest::mousePress(button.get(), Qt::LeftButton);
        QVERIFY(isNearly(faceOf(*button, ground), amberAt(0.8F, ground)));
        QTest::mouseRelease(button.get(), Qt::LeftButton);
        button->setAttribute(Qt::WA_UnderMouse, false);
        QVERIFY(isNearly(faceOf(*button, ground), Theme::current().amber));
    }
}

void OnboardingButtonsTest::primaryIsBrighterUnderThePointer()
{
    const auto button = makePrimary();
    button->setAttribute(Qt::WA_UnderMouse);
    QVERIFY(isNearly(faceOf(*button), Theme::current().amberHover, 0));
    QVERIFY(Theme::current().amberHover.lightness() > Theme::current().amber.lightness());
}

void OnboardingButtonsTest::primaryLabelIsWhiteWithASoftShadow()
{
    const auto button = makePrimary(QStringLiteral("HHHH"));
    const auto blank = makePrimary(QString());
    for (const qreal ratio : pixelRatios) {
        const QImage image = rendered(*button, ratio, Qt::white);
        const QImage without = rendered(*blank, ratio, Qt::white);
        QVERIFY(inkCount(image, Qt::white) > inkCount(without, Qt::white) + 20);
        // Darker than the face, which nothing else is.
        int darker = 0;
        for (int y = 0; y < image.height(); ++y) {
            for (int x = 0; x < image.width(); ++x) {
                darker += image.pixelColor(x, y).green() < Theme::current().amber.green() - 8 ? 1 : 0;
            }
        }
        QVERIFY(darker > 20);
    }
}

void OnboardingButtonsTest::primaryLabelIsDarkWhereMoreContrastIsWanted()
{
    SettingsPortal portal;
    portal.setAppearance(QStringLiteral("contrast"), 1U);
    QTRY_VERIFY(Appearance::shared().increasesContrast());
    const auto button = makePrimary(QStringLiteral("HHHH"));
    const QImage image = rendered(*button);
    QVERIFY(inkCount(image, QColor(0x2A, 0x1B, 0x00)) > 20);
    QCOMPARE(inkCount(image, Qt::white), 0);
    portal.setAppearance(QStringLiteral("contrast"), 0U);
    QTRY_VERIFY(!Appearance::shared().increasesContrast());
}

void OnboardingButtonsTest::disabledPrimarySaysThatItIsDone_data()
{
    QTest::addColumn<ScopedLook::Look>("look");
    QTest::newRow("light") << ScopedLook::Look::Light;
    QTest::newRow("dark") << ScopedLook::Look::Dark;
}

void OnboardingButtonsTest::disabledPrimarySaysThatItIsDone()
{
    QFETCH(const ScopedLook::Look, look);
    const ScopedLook scoped(look);
    const Theme &theme = Theme::current();
    // No ink but the check mark's.
    const auto button = makePrimary(QStringLiteral("\u2003\u2003"));
    button->setEnabled(false);
    const QImage image = rendered(*button, 1, theme.window);
    QVERIFY(isNearly(colorAt(image, onFace), composited(theme.amberTint, theme.window)));
    QVERIFY(inkCount(image, theme.amberInk) > 50);
    button->setEnabled(true);
    QCOMPARE(inkCount(rendered(*button, 1, theme.window), theme.amberInk), 0);
}

void OnboardingButtonsTest::primaryHasARingOfItsOwnColor()
{
    QWidget window;
    auto *const button = makePrimary().release();
    button->setParent(&window);
    window.show();
    QVERIFY(QTest::qWaitForWindowActive(&window));
    const QPoint onRing(button->width() / 2, 1);
    button->clearFocus();
    QVERIFY(!isNearly(colorAt(rendered(*button), onRing), Theme::current().amberFocusRing));
    button->setFocus(Qt::TabFocusReason);
    QVERIFY(isNearly(colorAt(rendered(*button), onRing), Theme::current().amberFocusRing));
}

void OnboardingButtonsTest::longPrimaryTextIsTheTooltip()
{
    const auto button = makePrimary(QString(200, u'x'));
    QHelpEvent help(QEvent::ToolTip, {}, {});
    QCoreApplication::sendEvent(button.get(), &help);
    QCOMPARE(button->toolTip(), button->text());
    button->setText(QStringLiteral("Short"));
    QCoreApplication::sendEvent(button.get(), &help);
    QCOMPARE(button->toolTip(), QString());
}

void OnboardingButtonsTest::linkIsPaleWhilePressed()
{
    const Theme &theme = Theme::current();
    OnboardingSkipLink link(QStringLiteral("HHHHHHHH"));
    link.resize(link.sizeHint());
    link.show();
    QColor pale = theme.secondary;
    pale.setAlphaF(0.6F);
    QTest::mousePress(&link, Qt::LeftButton);
    QCOMPARE(inkCount(rendered(link, 2, Qt::white), theme.secondary), 0);
    QVERIFY(inkCount(rendered(link, 2, Qt::white), composited(pale, Qt::white)) > 50);
    QTest::mouseRelease(&link, Qt::LeftButton);
    link.setAttribute(Qt::WA_UnderMouse, false);
    QVERIFY(inkCount(rendered(link, 2, Qt::white), theme.secondary) > 50);
}

void OnboardingButtonsTest::linkIsDarkerUnderThePointer()
{
    OnboardingSkipLink link(QStringLiteral("HHHHHHHH"));
    link.resize(link.sizeHint());
    QCOMPARE(inkCount(rendered(link, 2, Qt::white), Theme::current().primary), 0);
    link.setAttribute(Qt::WA_UnderMouse);
    QVERIFY(inkCount(rendered(link, 2, Qt::white), Theme::current().primary) > 50);
}

void OnboardingButtonsTest::linkHasTheGivenMeasures()
{
    const OnboardingSkipLink link(QStringLiteral("Not now"));
    QCOMPARE(link.font().pixelSize(), 13);
    QCOMPARE(link.font().weight(), QFont::Normal);
    QCOMPARE(link.sizeHint().height(), 16 + 2 * OnboardingSkipLink::lineInset);
}

void OnboardingButtonsTest::backCanBeHitAroundItsChevron()
{
    OnboardingBackButton back;
    back.resize(back.sizeHint());
    QSignalSpy clicked(&back, &OnboardingBackButton::clicked);
    QTest::mouseClick(&back, Qt::LeftButton, {}, QPoint(outset, outset));
    QTest::mouseClick(&back, Qt::LeftButton, {}, QPoint(outset + 28, outset + 28));
    QCOMPARE(clicked.count(), 2);
    QTest::mouseClick(&back, Qt::LeftButton, {}, QPoint(outset + 29, outset + 29));
    QCOMPARE(clicked.count(), 2);
}

void OnboardingButtonsTest::backPointsAgainstTheReadingDirection()
{
    OnboardingBackButton back;
    back.resize(back.sizeHint());
    const QImage toTheLeft = rendered(back, 2);
    back.setLayoutDirection(Qt::RightToLeft);
    const QImage toTheRight = rendered(back, 2);
    QVERIFY(toTheLeft != toTheRight);
    QCOMPARE(
        inkCount(toTheLeft, Theme::current().secondary), inkCount(toTheRight, Theme::current().secondary));
}

void OnboardingButtonsTest::keysPressOnceForEachTime_data()
{
    QTest::addColumn<Qt::Key>("key");
    QTest::newRow("return") << Qt::Key_Return;
    QTest::newRow("enter") << Qt::Key_Enter;
    QTest::newRow("space") << Qt::Key_Space;
}

void OnboardingButtonsTest::keysPressOnceForEachTime()
{
    QFETCH(const Qt::Key, key);
    const auto primary = makePrimary();
    OnboardingSkipLink link(QStringLiteral("Not now"));
    OnboardingBackButton back;
    for (OnboardingButton *const button :
         {static_cast<OnboardingButton *>(primary.get()), static_cast<OnboardingButton *>(&link),
          static_cast<OnboardingButton *>(&back)}) {
        QSignalSpy clicked(button, &OnboardingButton::clicked);
        QTest::keyClick(button, key);
        QCOMPARE(clicked.count(), 1);
        QKeyEvent again(QEvent::KeyPress, key, Qt::NoModifier, QString(), true);
        QCoreApplication::sendEvent(button, &again);
        QCOMPARE(clicked.count(), 1);
    }
}

void OnboardingButtonsTest::areButtonsForAssistivePrograms()
{
    const auto primary = makePrimary();
    OnboardingSkipLink link(QStringLiteral("Not now"));
    OnboardingBackButton back;

    struct Expectation {
        QWidget *button;
        QString name;
    };

    for (const auto &[button, name] :
         {Expectation{primary.get(), QStringLiteral("Get Started")},
          Expectation{&link, QStringLiteral("Not now")}, Expectation{&back, QStringLiteral("Back")}}) {
        QAccessibleInterface *const accessible = QAccessible::queryAccessibleInterface(button);
        QVERIFY(accessible != nullptr);
        QCOMPARE(accessible->role(), QAccessible::Button);
        QCOMPARE(accessible->text(QAccessible::Name), name);
        QVERIFY(
            accessible->actionInterface()->actionNames().contains(QAccessibleActionInterface::pressAction()));
    }
}

void OnboardingButtonsTest::picture()
{
    QWidget window;
    auto *const column = new QVBoxLayout(&window);
    auto *const focused = new OnboardingPrimaryButton(QStringLiteral("Get Started"));
    auto *const pressed = new OnboardingPrimaryButton(QStringLiteral("Get Started"));
    auto *const done = new OnboardingPrimaryButton(QStringLiteral("Get Started"));
    auto *const link = new OnboardingSkipLink(QStringLiteral("Not now"));
    for (QWidget *const button : std::initializer_list<QWidget *>{focused, pressed, done, link}) {
        column->addWidget(button);
    }
    pressed->setDown(true);
    done->setEnabled(false);
    window.show();
    QVERIFY(QTest::qWaitForWindowActive(&window));
    focused->setFocus();
    savePicture(window, QStringLiteral("onboarding-buttons"));
    link->setFocus();
    savePicture(window, QStringLiteral("onboarding-link"));
}

QTEST_MAIN(OnboardingButtonsTest)
#include "OnboardingButtonsTest.moc"
