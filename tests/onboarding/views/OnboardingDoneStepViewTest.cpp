#include "OnboardingDoneStepView.h"

#include "DesktopSession.h"
#include "TemporaryHome.h"
#include "TextLabel.h"
#include "onboardingPage.h"
#include "savePicture.h"
#include "screenshotAdvice.h"

#include <QTest>

class OnboardingDoneStepViewTest final : public QObject {
    Q_OBJECT

private:
    [[nodiscard]] static QList<TextLabel *> texts(const OnboardingDoneStepView &page)
    {
        return page.findChildren<TextLabel *>();
    }

private Q_SLOTS:
    void saysItsTexts();
    void adviceIsAParagraphOfItsOwn_data();
    void adviceIsAParagraphOfItsOwn();
    void theButtonFinishes();
};

void OnboardingDoneStepViewTest::saysItsTexts()
{
    const OnboardingDoneStepView page(QString(), [] {});
    QCOMPARE(texts(page).size(), 2);
    QCOMPARE(texts(page).at(0)->text(), QStringLiteral("You're all set."));
    QCOMPARE(
        texts(page).at(1)->text(),
        QStringLiteral(
            "Deskbroom is already watching. Look for its icon in your menu bar whenever you need it."));
    QCOMPARE(onboardingPage::labels(page), QStringList(QStringLiteral("Start Using Deskbroom")));
}

void OnboardingDoneStepViewTest::adviceIsAParagraphOfItsOwn_data()
{
    QTest::addColumn<DesktopSession>("session");
    for (const char *const desktop : {"KDE", "XFCE", "MATE", "Pantheon", "LXQt", "Deepin"}) {
        QTest::newRow(desktop) << DesktopSession{.desktop = desktop};
    }
    QTest::newRow("Flameshot") << DesktopSession{
        .desktop = "sway",
        .files = {{QStringLiteral(".config/flameshot/flameshot.ini"), "[General]\nsavePath=%HOME%\n"}}};
}

void OnboardingDoneStepViewTest::adviceIsAParagraphOfItsOwn()
{
    QFETCH(const DesktopSession, session);
    const TemporaryHome home;
    session.start(home);
    const QString advice = screenshotAdvice();
    OnboardingDoneStepView page(advice, [] {});
    page.resize(onboardingPage::size);
    page.show();
    QCOMPARE(texts(page).size(), 3);
    QCOMPARE(texts(page).at(2)->text(), advice);
    // Two lines, and nothing wider than the block.
    QCOMPARE(texts(page).at(2)->heightForWidth(380), 2 * 21);
    for (const QString &word : advice.split(u' ')) {
        QVERIFY(texts(page).at(2)->fontMetrics().horizontalAdvance(word) <= 380);
    }
    savePicture(page, QStringLiteral("onboarding-4-done-") + QString::fromUtf8(QTest::currentDataTag()));
}

void OnboardingDoneStepViewTest::theButtonFinishes()
{
    int finished = 0;
    const OnboardingDoneStepView page(QString(), [&finished] { ++finished; });
    onboardingPage::primary(page).click();
    QCOMPARE(finished, 1);
}

QTEST_MAIN(OnboardingDoneStepViewTest)
#include "OnboardingDoneStepViewTest.moc"
