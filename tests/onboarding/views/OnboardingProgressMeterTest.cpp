#include "OnboardingProgressMeter.h"

#include "StillDesktop.h"
#include "Theme.h"
#include "rendering.h"

#include <QTest>

#include <sys/wait.h>
#include <unistd.h>

#include <csignal>

namespace {

constexpr int segmentWidth = 36;
constexpr int gap = 6;

QColor segmentColor(OnboardingProgressMeter &meter, int index)
{
    const QPointF middle(index * (segmentWidth + gap) + segmentWidth / 2.0, 2);
    return colorAt(rendered(meter, 1, Theme::current().window), middle);
}

QColor restColor()
{
    QColor rest = Theme::current().secondary;
    rest.setAlphaF(0.25F);
    return composited(rest, Theme::current().window);
}

int filledSegments(OnboardingProgressMeter &meter)
{
    int count = 0;
    for (int index = 0; index < meter.totalSteps(); ++index) {
        count += isNearly(segmentColor(meter, index), Theme::current().amber) ? 1 : 0;
    }
    return count;
}

/// Looks at the second segment at each frame.
class FrameRecorder final : public QObject {
public:
    explicit FrameRecorder(OnboardingProgressMeter &meter) : m_meter(&meter)
    {
        meter.installEventFilter(this);
    }

    bool eventFilter(QObject *, QEvent *event) override
    {
        if (event->type() == QEvent::UpdateRequest) {
            const QColor color = segmentColor(*m_meter, 1);
            hasSeenBetween |= !isNearly(color, restColor()) && !isNearly(color, Theme::current().amber);
        }
        return false;
    }

    bool hasSeenBetween = false;

private:
    OnboardingProgressMeter *m_meter;
};

} // namespace

class OnboardingProgressMeterTest final : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void fillsTheCurrentSegmentAndAllBefore_data();
    void fillsTheCurrentSegmentAndAllBefore();
    void hasTheGivenMeasures();
    void changesTheColorOfOneSegmentGently();
    void changesAtOnceWhereMotionIsReduced();
    void beginsAtTheOtherEndInARightToLeftLook();
    void ofNoStepsIsEmpty();
    void aNegativeNumberOfStepsStopsTheProgram();
};

void OnboardingProgressMeterTest::fillsTheCurrentSegmentAndAllBefore_data()
{
    QTest::addColumn<ScopedLook::Look>("look");
    QTest::addColumn<int>("currentStep");
    for (const int step : {-1, 0, 1, 2, 3, 7}) {
        QTest::addRow("light, %d", step) << ScopedLook::Look::Light << step;
        QTest::addRow("dark, %d", step) << ScopedLook::Look::Dark << step;
    }
}

void OnboardingProgressMeterTest::fillsTheCurrentSegmentAndAllBefore()
{
    QFETCH(const ScopedLook::Look, look);
    QFETCH(const int, currentStep);
    const ScopedLook scoped(look);
    OnboardingProgressMeter meter(currentStep, 4);
    for (int index = 0; index < 4; ++index) {
        const QColor expected = index <= currentStep ? Theme::current().amber : restColor();
        QVERIFY2(isNearly(segmentColor(meter, index), expected), qPrintable(QString::number(index)));
    }
}

void OnboardingProgressMeterTest::hasTheGivenMeasures()
{
    OnboardingProgressMeter meter(3, 4);
    QCOMPARE(meter.size(), QSize(162, 4));
    const QImage image = rendered(meter);
    QCOMPARE(colorAt(image, {segmentWidth + gap / 2.0, 2}).alpha(), 0);
    // Round at its ends.
    QVERIFY(colorAt(image, {0, 0}).alpha() < 200);
    QCOMPARE(colorAt(image, {segmentWidth / 2.0, 0}).alpha(), 255);
}

void OnboardingProgressMeterTest::changesTheColorOfOneSegmentGently()
{
    OnboardingProgressMeter meter(0, 4);
    meter.show();
    FrameRecorder recorder(meter);
    // Again if the machine was too busy to show it on its way.
    constexpr int times = 5;
    for (int time = 0; time < times && !recorder.hasSeenBetween; ++time) {
        meter.setCurrentStep(0);
        QTRY_COMPARE(filledSegments(meter), 1);
        meter.setCurrentStep(1);
        QCOMPARE(meter.currentStep(), 1);
        QCOMPARE(filledSegments(meter), 1);
        QVERIFY(isNearly(segmentColor(meter, 1), restColor()));
        QTRY_COMPARE(filledSegments(meter), 2);
    }
    QVERIFY(recorder.hasSeenBetween);
    // Turned round on its way.
    meter.setCurrentStep(2);
    meter.setCurrentStep(0);
    QTRY_COMPARE(filledSegments(meter), 1);
    QVERIFY(isNearly(segmentColor(meter, 2), restColor()));
}

void OnboardingProgressMeterTest::changesAtOnceWhereMotionIsReduced()
{
    const StillDesktop still;
    OnboardingProgressMeter meter(0, 4);
    meter.show();
    meter.setCurrentStep(2);
    QCOMPARE(filledSegments(meter), 3);
}

void OnboardingProgressMeterTest::beginsAtTheOtherEndInARightToLeftLook()
{
    OnboardingProgressMeter meter(0, 4);
    meter.setLayoutDirection(Qt::RightToLeft);
    QVERIFY(isNearly(segmentColor(meter, 0), restColor()));
    QVERIFY(isNearly(segmentColor(meter, 3), Theme::current().amber));
}

void OnboardingProgressMeterTest::ofNoStepsIsEmpty()
{
    const OnboardingProgressMeter meter(0, 0);
    QCOMPARE(meter.width(), 0);
    QCOMPARE(meter.totalSteps(), 0);
}

void OnboardingProgressMeterTest::aNegativeNumberOfStepsStopsTheProgram()
{
    const pid_t child = ::fork();
    if (child == 0) {
        ::close(STDERR_FILENO);
        // The test framework's handler would look for a debugger first.
        std::signal(SIGABRT, SIG_DFL);
        const OnboardingProgressMeter meter(0, -1);
        ::_exit(0);
    }
    int status = 0;
    QCOMPARE(::waitpid(child, &status, 0), child);
    QVERIFY(WIFSIGNALED(status));
    QCOMPARE(WTERMSIG(status), SIGABRT);
}

QTEST_MAIN(OnboardingProgressMeterTest)
#include "OnboardingProgressMeterTest.moc"
