#include "OnboardingWelcomeStepView.h"

#include "ApplicationIcon.h"
#include "StillDesktop.h"
#include "TextLabel.h"
#include "onboardingPage.h"
#include "rendering.h"

#include <QIcon>
#include <QPixmap>
#include <QTest>
#include <QTimer>

#include <algorithm>

namespace {

/// Timers' ticks of the whole process.
class TickCounter final : public QObject {
public:
    TickCounter() { QCoreApplication::instance()->installEventFilter(this); }

    bool eventFilter(QObject *, QEvent *event) override
    {
        ticks += event->type() == QEvent::Timer ? 1 : 0;
        return false;
    }

    int ticks = 0;
};

/// Those in a tenth of a second.
int ticksOfATenth()
{
    const TickCounter counter;
    bool isOver = false;
    QTimer::singleShot(100, &counter, [&isOver] { isOver = true; });
    while (!isOver) {
        // Waiting without a timer of the test's own.
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
    }
    return counter.ticks;
}

/// Sees each scale that the icon is painted with.
class ScaleRecorder final : public QObject {
public:
    explicit ScaleRecorder(OnboardingWelcomeStepView &page) : m_page(&page)
    {
        page.findChild<ApplicationIcon *>()->installEventFilter(this);
    }

    [[nodiscard]] qreal greatest() const { return m_greatest; }

    void forget() { m_greatest = 0; }

    bool eventFilter(QObject *, QEvent *event) override
    {
        if (event->type() == QEvent::Paint) {
            m_greatest = std::max(m_greatest, m_page->iconScale());
        }
        return false;
    }

private:
    const OnboardingWelcomeStepView *m_page;
    qreal m_greatest = 0;
};

/// The columns that the icon covers in the middle of its room.
int iconWidth(QWidget &icon)
{
    const QImage image = rendered(icon);
    int covered = 0;
    for (int x = 0; x < image.width(); ++x) {
        covered += image.pixelColor(x, image.height() / 2).alpha() > 127 ? 1 : 0;
    }
    return covered;
}

} // namespace

class OnboardingWelcomeStepViewTest final : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void theIconSpringsToItsSizeEachTime();
    void nothingTicksOnceItHasSettled();
    void theIconIsThereAtOnceWhereMotionIsReduced();
    void theIconIsDrawnAroundItsCentre();
    void saysItsTexts();
    void theButtonLeadsOn();
};

void OnboardingWelcomeStepViewTest::theIconSpringsToItsSizeEachTime()
{
    OnboardingWelcomeStepView page([] {});
    ScaleRecorder recorder(page);
    // Several times, in case that the machine is too busy for the frames in which it is at its largest.
    constexpr int times = 5;
    int timesBeyond = 0;
    for (int time = 0; time < times && timesBeyond < 2; ++time) {
        recorder.forget();
        page.show();
        QCOMPARE(page.iconScale(), 0.8);
        QTRY_COMPARE(page.iconScale(), 1.0);
        timesBeyond += recorder.greatest() > 1.005 ? 1 : 0;
        QVERIFY(recorder.greatest() < 1.025);
        page.hide();
    }
    QCOMPARE(timesBeyond, 2);
}

void OnboardingWelcomeStepViewTest::nothingTicksOnceItHasSettled()
{
    OnboardingWelcomeStepView page([] {});
    page.show();
    QVERIFY(ticksOfATenth() > 1);
    QTRY_COMPARE(page.iconScale(), 1.0);
    // The one that ends the waiting, and what the last frames have left.
    QTRY_VERIFY(ticksOfATenth() <= 1);
}

void OnboardingWelcomeStepViewTest::theIconIsThereAtOnceWhereMotionIsReduced()
{
    const StillDesktop still;
    OnboardingWelcomeStepView page([] {});
    page.show();
    QCOMPARE(page.iconScale(), 1.0);
}

void OnboardingWelcomeStepViewTest::theIconIsDrawnAroundItsCentre()
{
    QPixmap square(96, 96);
    square.fill(Qt::red);
    ApplicationIcon icon(96);
    icon.setWindowIcon(QIcon(square));
    QCOMPARE(iconWidth(icon), 96);
    icon.setScale(0.75);
    QCOMPARE(iconWidth(icon), 72);
    QCOMPARE(colorAt(rendered(icon), {48, 48}), QColor(Qt::red));
    QCOMPARE(colorAt(rendered(icon), {11, 48}).alpha(), 0);
    QCOMPARE(icon.size(), QSize(96, 96));
}

void OnboardingWelcomeStepViewTest::saysItsTexts()
{
    OnboardingWelcomeStepView page([] {});
    page.show();
    QStringList texts;
    for (const TextLabel *const label : page.findChildren<TextLabel *>()) {
        texts.append(label->text());
        QCOMPARE(label->width(), 360);
    }
    QCOMPARE(
        texts, QStringList() << QStringLiteral("Thanks for downloading.")
                             << QStringLiteral("A few quick steps and you're set — screenshots handled "
                                               "automatically, right from your menu bar."));
    QCOMPARE(onboardingPage::labels(page), QStringList(QStringLiteral("Get Started")));
}

void OnboardingWelcomeStepViewTest::theButtonLeadsOn()
{
    int continued = 0;
    const OnboardingWelcomeStepView page([&continued] { ++continued; });
    onboardingPage::primary(page).click();
    QCOMPARE(continued, 1);
}

QTEST_MAIN(OnboardingWelcomeStepViewTest)
#include "OnboardingWelcomeStepViewTest.moc"
