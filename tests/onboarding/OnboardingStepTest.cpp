#include "OnboardingStep.h"

#include <QTest>

class OnboardingStepTest final : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void stepsAreCountedInTheirOrder();
    void onlyTheirNumbersNameSteps();
};

void OnboardingStepTest::stepsAreCountedInTheirOrder()
{
    QCOMPARE(onboardingSteps::count, 4);
    QVERIFY(onboardingSteps::all.front() == OnboardingStep::Welcome);
    QVERIFY(onboardingSteps::all.back() == OnboardingStep::Done);
    for (int index = 0; index < onboardingSteps::count; ++index) {
        const OnboardingStep step = onboardingSteps::all.at(static_cast<std::size_t>(index));
        QCOMPARE(onboardingSteps::rawValue(step), index);
        QCOMPARE(onboardingSteps::position(step), index + 1);
    }
}

void OnboardingStepTest::onlyTheirNumbersNameSteps()
{
    for (const OnboardingStep step : onboardingSteps::all) {
        QVERIFY(onboardingSteps::fromRawValue(onboardingSteps::rawValue(step)) == step);
    }
    QVERIFY(!onboardingSteps::fromRawValue(-1));
    QVERIFY(!onboardingSteps::fromRawValue(onboardingSteps::count));
}

QTEST_GUILESS_MAIN(OnboardingStepTest)
#include "OnboardingStepTest.moc"
