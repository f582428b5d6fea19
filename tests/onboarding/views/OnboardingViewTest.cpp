#include "OnboardingView.h"

#include "OnboardingDoneStepView.h"
#include "OnboardingFixture.h"
#include "OnboardingFolderAccessStepView.h"
#include "OnboardingNotificationsStepView.h"
#include "OnboardingProgressMeter.h"
#include "OnboardingWelcomeStepView.h"
#include "Theme.h"
#include "rendering.h"
#include "savePicture.h"

#include <QAccessible>
#include <QLayout>
#include <QPointer>
#include <QScopeGuard>
#include <QTranslator>

namespace {

constexpr QSize viewSize(560, 680);

/// Calls the Desktop something else.
class OtherWording final : public QTranslator {
    Q_OBJECT

public:
    [[nodiscard]] bool isEmpty() const override { return false; }

    [[nodiscard]] QString translate(
        const char * /*context*/, const char *source, const char * /*comment*/, int /*n*/) const override
    {
        return QString::fromUtf8(source).replace(QStringLiteral("Desktop"), QStringLiteral("Archive"));
    }
};

} // namespace

/// The way through the pages, and what stands around them.
class OnboardingViewTest final : public QObject {
    Q_OBJECT

private:
    [[nodiscard]] int filledSegments() const
    {
        const QImage image = rendered(m_shown.view());
        constexpr qreal first = 199 + 18;
        constexpr qreal distance = 42;
        int count = 0;
        for (int index = 0; index < onboardingSteps::count; ++index) {
            count += isNearly(colorAt(image, {first + distance * index, 26}), Theme::current().amber) ? 1 : 0;
        }
        return count;
    }

    OnboardingFixture m_shown;

private Q_SLOTS:
    void init();
    void cleanup();
    void beginsWithTheWelcomePage();
    void theHeaderKeepsItsPlace();
    void everyStepHasItsPageAndItsPlace();
    void theThirdStepFillsThreeSegments();
    void whereTheScreenIsSmallEveryPageHasAllOfItsParts();
    void theLastPageFinishes();
    void theViewMayGoWhenItFinishes();
    void backFromTheLastPageShowsTheFolderPageAfresh();
    void backLeadsToTheWelcomePageAndNoFurther();
    void goingBackAndForthFastEndsInTheRightPage();
    void nothingIsLeftBehind();
    void aFolderThatGetsAnotherNameIsCalledByIt_data();
    void aFolderThatGetsAnotherNameIsCalledByIt();
    void isReadableForAssistivePrograms();
    void pictures_data();
    void pictures();
    void pictureOfTheWay();
    void pictureRightToLeft();
};

void OnboardingViewTest::init()
{
    m_shown.show();
}

void OnboardingViewTest::cleanup()
{
    m_shown.close();
}

void OnboardingViewTest::beginsWithTheWelcomePage()
{
    QVERIFY(m_shown.view().step() == OnboardingStep::Welcome);
    QCOMPARE(m_shown.view().size(), viewSize);
    QVERIFY(qobject_cast<OnboardingWelcomeStepView *>(&m_shown.page()) != nullptr);
    QCOMPARE(m_shown.caption(), QStringLiteral("1 OF 4"));
    QCOMPARE(filledSegments(), 1);
    QVERIFY(!m_shown.back().isVisible());
    QCOMPARE(colorAt(rendered(m_shown.view()), {2, 2}), Theme::current().window);
}

void OnboardingViewTest::theHeaderKeepsItsPlace()
{
    const auto places = [this] {
        return QList<QRect>{
            m_shown.part<OnboardingHeader>().geometry(), m_shown.part<OnboardingProgressMeter>().geometry(),
            m_shown.captionLabel().geometry(), m_shown.back().geometry()};
    };
    const QList<QRect> onWelcome = places();
    QCOMPARE(onWelcome.at(1), QRect(199, 24, 162, 4));
    QCOMPARE(onWelcome.at(2).top(), 24 + 4 + 8);
    // Around the middle of a slot of 13 that is 32 from the edge.
    QCOMPARE(onWelcome.at(3).center().x(), 32 + 6);
    m_shown.goTo(OnboardingStep::Notifications);
    QVERIFY(m_shown.back().isVisible());
    QCOMPARE(places(), onWelcome);
}

void OnboardingViewTest::everyStepHasItsPageAndItsPlace()
{
    m_shown.goTo(OnboardingStep::Notifications);
    QCOMPARE(m_shown.caption(), QStringLiteral("2 OF 4"));
    QVERIFY(qobject_cast<OnboardingNotificationsStepView *>(&m_shown.page()) != nullptr);
    m_shown.goTo(OnboardingStep::FolderAccess);
    QCOMPARE(m_shown.caption(), QStringLiteral("3 OF 4"));
    QVERIFY(qobject_cast<OnboardingFolderAccessStepView *>(&m_shown.page()) != nullptr);
    m_shown.goTo(OnboardingStep::Done);
    QCOMPARE(m_shown.caption(), QStringLiteral("4 OF 4"));
    QVERIFY(qobject_cast<OnboardingDoneStepView *>(&m_shown.page()) != nullptr);
    QCOMPARE(m_shown.finished(), 0);
    for (const OnboardingStep step :
         {OnboardingStep::FolderAccess, OnboardingStep::Notifications, OnboardingStep::Welcome}) {
        m_shown.back().click();
        QVERIFY(m_shown.view().step() == step);
    }
}

void OnboardingViewTest::theThirdStepFillsThreeSegments()
{
    m_shown.goTo(OnboardingStep::FolderAccess);
    QCOMPARE(m_shown.caption(), QStringLiteral("3 OF 4"));
    QTRY_COMPARE(filledSegments(), 3);
}

void OnboardingViewTest::whereTheScreenIsSmallEveryPageHasAllOfItsParts()
{
    // Whose last page has some advice.
    qputenv("XDG_CURRENT_DESKTOP", "XFCE");
    const auto restored = qScopeGuard([] { qunsetenv("XDG_CURRENT_DESKTOP"); });
    m_shown.view().resize(m_shown.view().minimumSize());
    QVERIFY(m_shown.view().height() < viewSize.height());
    for (const OnboardingStep step : onboardingSteps::all) {
        m_shown.goTo(step);
        QVERIFY(m_shown.page().layout()->minimumSize().height() <= m_shown.page().height());
    }
}

void OnboardingViewTest::theLastPageFinishes()
{
    m_shown.goTo(OnboardingStep::Done);
    m_shown.goOn();
    QCOMPARE(m_shown.finished(), 1);
    QVERIFY(m_shown.view().step() == OnboardingStep::Done);
}

void OnboardingViewTest::theViewMayGoWhenItFinishes()
{
    QPointer<OnboardingView> view;
    m_shown.show([this, &view] {
        view = m_shown.take().release();
        view->hide();
        view->deleteLater();
    });
    m_shown.goTo(OnboardingStep::Done);
    m_shown.goOn();
    QVERIFY(!view.isNull());
    QTRY_VERIFY(view.isNull());
}

void OnboardingViewTest::backFromTheLastPageShowsTheFolderPageAfresh()
{
    m_shown.goTo(OnboardingStep::FolderAccess);
    const QPointer<QWidget> before = &m_shown.page();
    QTRY_VERIFY(
        m_shown.part<OnboardingPageStage>().findChild<OnboardingFolderAccessStepView *>()->hasAccess());
    m_shown.goTo(OnboardingStep::Done);
    QVERIFY(before.isNull());
    m_shown.back().click();
    auto *const afresh = qobject_cast<OnboardingFolderAccessStepView *>(&m_shown.page());
    if (afresh == nullptr) {
        QFAIL("Another page is shown");
    }
    QVERIFY(!afresh->hasAccess());
    QTRY_VERIFY(afresh->hasAccess());
}

void OnboardingViewTest::backLeadsToTheWelcomePageAndNoFurther()
{
    m_shown.goTo(OnboardingStep::Notifications);
    m_shown.back().click();
    QVERIFY(m_shown.view().step() == OnboardingStep::Welcome);
    QVERIFY(!m_shown.back().isVisible());
    auto *const welcome = qobject_cast<OnboardingWelcomeStepView *>(&m_shown.page());
    QVERIFY(welcome != nullptr && welcome->iconScale() < 1);
    QTRY_COMPARE(welcome->iconScale(), 1.0);
    // As from a program that presses what it has seen before.
    m_shown.back().click();
    QVERIFY(m_shown.view().step() == OnboardingStep::Welcome);
}

void OnboardingViewTest::goingBackAndForthFastEndsInTheRightPage()
{
    for (int round = 0; round < 5; ++round) {
        m_shown.goOn();
        m_shown.goOn();
        m_shown.back().click();
        m_shown.goOn();
        QCoreApplication::processEvents();
        m_shown.back().click();
        m_shown.back().click();
    }
    m_shown.goOn();
    QVERIFY(m_shown.view().step() == OnboardingStep::Notifications);
    QTRY_VERIFY(m_shown.isAtRest());
    QVERIFY(qobject_cast<OnboardingNotificationsStepView *>(&m_shown.page()) != nullptr);
    QVERIFY(m_shown.page().isVisible());
    QTRY_COMPARE(filledSegments(), 2);
}

void OnboardingViewTest::nothingIsLeftBehind()
{
    const auto objects = [this] { return m_shown.view().findChildren<QObject *>().size(); };
    m_shown.goTo(OnboardingStep::Notifications);
    m_shown.goTo(OnboardingStep::FolderAccess);
    m_shown.goTo(OnboardingStep::Done);
    m_shown.back().click();
    m_shown.back().click();
    m_shown.back().click();
    QTRY_VERIFY(m_shown.isAtRest());
    QTRY_COMPARE(m_shown.part<OnboardingWelcomeStepView>().iconScale(), 1.0);
    const qsizetype objectsBefore = objects();
    const qsizetype widgetsBefore = QApplication::allWidgets().size();
    for (int round = 0; round < 200; ++round) {
        m_shown.goOn();
        if (round % 20 == 0) {
            m_shown.goOn();
            QCoreApplication::processEvents();
            m_shown.goOn();
            QCoreApplication::processEvents();
            m_shown.back().click();
            m_shown.back().click();
        }
        m_shown.back().click();
    }
    QTRY_VERIFY(m_shown.isAtRest());
    QTRY_COMPARE(m_shown.part<OnboardingWelcomeStepView>().iconScale(), 1.0);
    QTRY_COMPARE(objects(), objectsBefore);
    QCOMPARE(QApplication::allWidgets().size(), widgetsBefore);
}

void OnboardingViewTest::aFolderThatGetsAnotherNameIsCalledByIt_data()
{
    QTest::addColumn<OnboardingStep>("step");
    QTest::newRow("the notifications page") << OnboardingStep::Notifications;
    QTest::newRow("the folder page") << OnboardingStep::FolderAccess;
}

void OnboardingViewTest::aFolderThatGetsAnotherNameIsCalledByIt()
{
    QFETCH(const OnboardingStep, step);
    m_shown.goTo(step);
    const auto texts = [this] {
        QString all;
        for (const TextLabel *const label : m_shown.page().findChildren<TextLabel *>()) {
            all += label->text();
        }
        return all;
    };
    QVERIFY(texts().contains(QStringLiteral("your Desktop")));
    OtherWording wording;
    QCoreApplication::installTranslator(&wording);
    QTRY_VERIFY2(texts().contains(QStringLiteral("your Archive")), qPrintable(texts()));
    QCoreApplication::removeTranslator(&wording);
    QTRY_VERIFY(texts().contains(QStringLiteral("your Desktop")));
}

void OnboardingViewTest::isReadableForAssistivePrograms()
{
    const auto accessible = [](QWidget &widget) { return QAccessible::queryAccessibleInterface(&widget); };
    m_shown.goTo(OnboardingStep::Notifications);
    QAccessibleInterface *const place = accessible(m_shown.captionLabel());
    QCOMPARE(place->role(), QAccessible::StaticText);
    QCOMPARE(place->text(QAccessible::Name), QStringLiteral("2 OF 4"));
    QCOMPARE(accessible(m_shown.page())->role(), QAccessible::Grouping);
    QCOMPARE(
        accessible(m_shown.page())->text(QAccessible::Name),
        QStringLiteral("Know the moment you capture one."));
    QCOMPARE(accessible(m_shown.back())->text(QAccessible::Name), QStringLiteral("Back"));
    for (OnboardingButton *const button : m_shown.page().findChildren<OnboardingButton *>()) {
        QCOMPARE(accessible(*button)->role(), QAccessible::Button);
        QCOMPARE(accessible(*button)->text(QAccessible::Name), button->text());
    }
    for (TextLabel *const label : m_shown.page().findChildren<TextLabel *>()) {
        QCOMPARE(accessible(*label)->text(QAccessible::Name), label->text());
    }
}

void OnboardingViewTest::pictures_data()
{
    QTest::addColumn<OnboardingStep>("step");
    QTest::newRow("1-welcome") << OnboardingStep::Welcome;
    QTest::newRow("2-notifications") << OnboardingStep::Notifications;
    QTest::newRow("3-folder-granted") << OnboardingStep::FolderAccess;
    QTest::newRow("4-done") << OnboardingStep::Done;
}

/// Where the parts stand that the pictures show.
void OnboardingViewTest::pictures()
{
    QFETCH(const OnboardingStep, step);
    m_shown.goTo(step);
    if (step == OnboardingStep::Welcome) {
        QTRY_COMPARE(m_shown.part<OnboardingWelcomeStepView>().iconScale(), 1.0);
    }
    if (step == OnboardingStep::FolderAccess) {
        QTRY_VERIFY(m_shown.part<OnboardingFolderAccessStepView>().hasAccess());
    }
    QTRY_COMPARE(filledSegments(), onboardingSteps::position(step));
    const auto box = [this](const QWidget &widget) {
        return QRect(widget.mapTo(&m_shown.view(), QPoint()), widget.size());
    };
    const bool hasLink = m_shown.page().findChild<OnboardingSkipLink *>() != nullptr;
    constexpr int outset = OnboardingButton::outset;
    QCOMPARE(
        box(onboardingPage::primary(m_shown.page())).adjusted(outset, outset, -outset, -outset),
        QRect(48, hasLink ? 571 : 599, 464, 41));
    if (hasLink) {
        constexpr int inset = OnboardingSkipLink::lineInset;
        const QRect line = box(onboardingPage::secondary(m_shown.page())).adjusted(0, inset, 0, -inset);
        QCOMPARE(line.top(), 571 + 41 + 12);
        QCOMPARE(line.bottom() + 1, viewSize.height() - 40);
        QVERIFY(qAbs(line.center().x() - viewSize.width() / 2) <= 1);
    }
    savePicture(m_shown.view(), QStringLiteral("onboarding-") + QString::fromUtf8(QTest::currentDataTag()));
}

void OnboardingViewTest::pictureOfTheWay()
{
    m_shown.goOn();
    QTRY_VERIFY(m_shown.page().x() <= viewSize.width() / 2);
    savePicture(m_shown.view(), QStringLiteral("onboarding-transition"));
    QVERIFY(m_shown.back().isVisible());
    QCOMPARE(m_shown.caption(), QStringLiteral("2 OF 4"));
}

void OnboardingViewTest::pictureRightToLeft()
{
    m_shown.view().setLayoutDirection(Qt::RightToLeft);
    m_shown.goTo(OnboardingStep::Notifications);
    QVERIFY(m_shown.back().mapTo(&m_shown.view(), m_shown.back().rect().center()).x() > viewSize.width() / 2);
    savePicture(m_shown.view(), QStringLiteral("onboarding-right-to-left"));
}

QTEST_MAIN(OnboardingViewTest)
#include "OnboardingViewTest.moc"
