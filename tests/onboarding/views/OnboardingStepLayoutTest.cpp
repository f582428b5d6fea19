#include "OnboardingStepLayout.h"
#include "OnboardingDoneStepView.h"
#include "OnboardingFooter.h"
#include "OnboardingStepTexts.h"
#include "OnboardingWelcomeStepView.h"
#include "SymbolLabel.h"
#include "TextLabel.h"
#include "onboardingPage.h"

#include "ApplicationIcon.h"

#include <QTest>

#include <memory>

namespace {

constexpr int outset = OnboardingButton::outset;

class Page final : public OnboardingStepLayout {
public:
    explicit Page(OnboardingFooter *footer)
        : OnboardingStepLayout(
              QStringLiteral("folder.fill"), QStringLiteral("Headline"), QStringLiteral("Description"),
              footer, nullptr)
    {
    }
};

/// The page's parts as one sees them, from above.
struct Parts {
    QRect icon;
    QRect texts;
    QRect footer;
};

template <typename Icon> Parts partsOf(const QWidget &page)
{
    const QRect footer = page.findChild<OnboardingFooter *>()->geometry();
    return {
        .icon = page.findChild<Icon *>()->geometry(),
        .texts = page.findChild<OnboardingStepTexts *>()->geometry(),
        .footer = footer.adjusted(0, outset, 0, 0)};
}

} // namespace

class OnboardingStepLayoutTest final : public QObject {
    Q_OBJECT

private:
    /// 24 between all parts, of which the free space above and below is two.
    static void verifyPlaces(const Parts &parts)
    {
        constexpr int gap = 24;
        QCOMPARE(parts.texts.top() - parts.icon.bottom() - 1, gap);
        const int above = parts.icon.top() - gap;
        const int below = parts.footer.top() - parts.texts.bottom() - 1 - 2 * gap;
        QVERIFY2(qAbs(above - below) <= 1, qPrintable(QStringLiteral("%1, %2").arg(above).arg(below)));
        QVERIFY(qAbs(parts.icon.center().x() - onboardingPage::size.width() / 2) <= 1);
        QVERIFY(qAbs(parts.texts.center().x() - onboardingPage::size.width() / 2) <= 1);
        QCOMPARE(parts.footer.bottom() + 1, onboardingPage::size.height());
    }

private Q_SLOTS:
    void iconAndTextsStandInTheMiddle_data();
    void iconAndTextsStandInTheMiddle();
    void theWelcomePageIsLaidOutAlike();
    void textsHaveTheirFonts();
    void furtherParagraphsStandBelow();
};

void OnboardingStepLayoutTest::iconAndTextsStandInTheMiddle_data()
{
    QTest::addColumn<bool>("hasLink");
    QTest::addColumn<int>("footerHeight");
    QTest::newRow("one button") << false << 41 + 40;
    QTest::newRow("button and link") << true << 41 + 12 + 16 + 40;
}

void OnboardingStepLayoutTest::iconAndTextsStandInTheMiddle()
{
    QFETCH(const bool, hasLink);
    QFETCH(const int, footerHeight);
    const QString label = QStringLiteral("Label");
    Page page(hasLink ? new OnboardingFooter(label, label) : new OnboardingFooter(label));
    page.resize(onboardingPage::size);
    page.show();
    const Parts parts = partsOf<SymbolLabel>(page);
    verifyPlaces(parts);
    QCOMPARE(parts.icon.size(), QSize(48, 48));
    QCOMPARE(parts.texts.size(), QSize(380, 32 + 10 + 21));
    QCOMPARE(parts.footer.height(), footerHeight);
}

void OnboardingStepLayoutTest::theWelcomePageIsLaidOutAlike()
{
    OnboardingWelcomeStepView page([] {});
    page.resize(onboardingPage::size);
    page.show();
    const Parts parts = partsOf<ApplicationIcon>(page);
    verifyPlaces(parts);
    QCOMPARE(parts.icon.size(), QSize(96, 96));
    QCOMPARE(parts.texts.width(), 360);
}

void OnboardingStepLayoutTest::textsHaveTheirFonts()
{
    const Page page(new OnboardingFooter(QStringLiteral("Label")));
    const auto labels = page.findChildren<TextLabel *>();
    QCOMPARE(labels.size(), 2);
    QCOMPARE(labels.at(0)->font().pixelSize(), 26);
    QCOMPARE(labels.at(0)->font().weight(), QFont::Medium);
    QCOMPARE(labels.at(1)->font().pixelSize(), 14);
    QCOMPARE(labels.at(1)->font().weight(), QFont::Normal);
    const OnboardingWelcomeStepView welcome([] {});
    QCOMPARE(welcome.findChildren<TextLabel *>().constFirst()->font().pixelSize(), 30);
}

void OnboardingStepLayoutTest::furtherParagraphsStandBelow()
{
    OnboardingDoneStepView page(QStringLiteral("Advice"), [] {});
    page.resize(onboardingPage::size);
    page.show();
    const auto labels = page.findChildren<TextLabel *>();
    QCOMPARE(labels.size(), 3);
    QCOMPARE(labels.at(2)->y() - labels.at(1)->geometry().bottom() - 1, 10);
    verifyPlaces(partsOf<SymbolLabel>(page));
}

QTEST_MAIN(OnboardingStepLayoutTest)
#include "OnboardingStepLayoutTest.moc"
