#include "OnboardingPageStage.h"

#include "StillDesktop.h"
#include "rendering.h"

#include <QGraphicsOpacityEffect>
#include <QPainter>
#include <QPointer>
#include <QTest>

#include <algorithm>
#include <memory>
#include <vector>

namespace {

constexpr QSize stageSize(200, 100);

/// A page of one colour.
class Page final : public QWidget {
public:
    explicit Page(const QColor &color) : m_color(color) {}

protected:
    void paintEvent(QPaintEvent * /*event*/) override { QPainter(this).fillRect(rect(), m_color); }

private:
    QColor m_color;
};

/// Where a page was, one after the other, and how opaque.
class Recorder final : public QObject {
public:
    explicit Recorder(QWidget *page) : m_page(page) { page->installEventFilter(this); }

    bool eventFilter(QObject *, QEvent *event) override
    {
        if (event->type() == QEvent::Move) {
            positions.push_back(m_page->x());
            const auto *const effect = qobject_cast<QGraphicsOpacityEffect *>(m_page->graphicsEffect());
            opacities.push_back(effect != nullptr ? effect->opacity() : 1);
        }
        return false;
    }

    std::vector<int> positions;
    std::vector<qreal> opacities;

private:
    QWidget *m_page;
};

} // namespace

class OnboardingPageStageTest final : public QObject {
    Q_OBJECT

private:
    [[nodiscard]] qsizetype pageCount() const
    {
        return m_stage->findChildren<QWidget *>(QString(), Qt::FindDirectChildrenOnly).size();
    }

    [[nodiscard]] bool isAtRest() const
    {
        return m_stage->page()->pos() == QPoint() && m_stage->page()->graphicsEffect() == nullptr;
    }

    std::unique_ptr<OnboardingPageStage> m_stage;

private Q_SLOTS:
    void init();
    void cleanup();
    void theFirstPageIsThereAtOnce();
    void aPageComesInFromTheTrailingEdge_data();
    void aPageComesInFromTheTrailingEdge();
    void thePageBeforeLeavesAsAPicture();
    void thereIsNeverMoreThanOneUsablePage();
    void whatIsReplacedOnItsWayLeavesAsItLooks();
    void nothingMovesWhereMotionIsReduced();
    void nothingMovesWhileItIsNotShown();
    void aPageMayReplaceItself();
};

void OnboardingPageStageTest::init()
{
    m_stage = std::make_unique<OnboardingPageStage>();
    m_stage->resize(stageSize);
    m_stage->show();
}

void OnboardingPageStageTest::cleanup()
{
    m_stage.reset();
}

void OnboardingPageStageTest::theFirstPageIsThereAtOnce()
{
    m_stage->setPage(new Page(Qt::red));
    QVERIFY(isAtRest());
    QVERIFY(m_stage->page()->isVisible());
    QCOMPARE(m_stage->page()->size(), stageSize);
}

void OnboardingPageStageTest::aPageComesInFromTheTrailingEdge_data()
{
    QTest::addColumn<Qt::LayoutDirection>("direction");
    QTest::addColumn<int>("start");
    QTest::newRow("left to right") << Qt::LeftToRight << stageSize.width();
    QTest::newRow("right to left") << Qt::RightToLeft << -stageSize.width();
}

void OnboardingPageStageTest::aPageComesInFromTheTrailingEdge()
{
    QFETCH(const Qt::LayoutDirection, direction);
    QFETCH(const int, start);
    m_stage->setLayoutDirection(direction);
    m_stage->setPage(new Page(Qt::red));
    auto *const next = new Page(Qt::blue);
    Recorder recorder(next);
    m_stage->setPage(next);
    QCOMPARE(next->x(), start);
    QTRY_VERIFY(isAtRest());
    QVERIFY(recorder.positions.size() > 2);
    QVERIFY(std::ranges::is_sorted(
        recorder.positions, [start](int one, int other) { return qAbs(start - one) < qAbs(start - other); }));
    QCOMPARE(recorder.positions.back(), 0);
    QVERIFY(std::ranges::is_sorted(recorder.opacities));
}

void OnboardingPageStageTest::thePageBeforeLeavesAsAPicture()
{
    m_stage->setPage(new Page(Qt::red));
    const QPointer<QWidget> before = m_stage->page();
    m_stage->setPage(new Page(Qt::blue));
    QVERIFY(before.isNull() || before->isHidden());
    // Nothing has moved yet.
    QCOMPARE(colorAt(rendered(*m_stage), {1, 50}), QColor(Qt::red));
    QTRY_VERIFY(m_stage->page()->x() < stageSize.width() / 2);
    const int gone = stageSize.width() - m_stage->page()->x();
    const QImage halfway = rendered(*m_stage);
    const QColor leaving = colorAt(halfway, {1, 50});
    QVERIFY(gone == stageSize.width() || (leaving.red() > 0 && leaving.alpha() < 255));
    QTRY_VERIFY(isAtRest());
    QCOMPARE(colorAt(rendered(*m_stage), {1, 50}), QColor(Qt::blue));
}

void OnboardingPageStageTest::thereIsNeverMoreThanOneUsablePage()
{
    m_stage->setPage(new Page(Qt::red));
    for (int change = 0; change < 20; ++change) {
        auto *const page = new Page(change % 2 == 0 ? Qt::blue : Qt::green);
        m_stage->setPage(page);
        const auto pages = m_stage->findChildren<QWidget *>(QString(), Qt::FindDirectChildrenOnly);
        QCOMPARE(std::ranges::count_if(pages, [](const QWidget *each) { return each->isVisible(); }), 1);
        QCOMPARE(m_stage->page(), page);
    }
    QTRY_COMPARE(pageCount(), 1);
    QTRY_VERIFY(isAtRest());
}

void OnboardingPageStageTest::whatIsReplacedOnItsWayLeavesAsItLooks()
{
    // Again if the machine was too busy to see it on its way.
    constexpr int times = 5;
    for (int time = 0; time < times && (time == 0 || isAtRest()); ++time) {
        m_stage->setPage(new Page(Qt::red));
        m_stage->setPage(new Page(Qt::blue));
        QTRY_VERIFY(m_stage->page()->x() < stageSize.width());
    }
    QVERIFY(!isAtRest());
    const QImage before = rendered(*m_stage);
    m_stage->setPage(new Page(Qt::green));
    const QImage after = rendered(*m_stage);
    for (int x = 0; x < stageSize.width(); x += 10) {
        QVERIFY(isNearly(before.pixelColor(x, 50), after.pixelColor(x, 50), 3));
    }
}

void OnboardingPageStageTest::nothingMovesWhereMotionIsReduced()
{
    const StillDesktop still;
    m_stage->setPage(new Page(Qt::red));
    m_stage->setPage(new Page(Qt::blue));
    QVERIFY(isAtRest());
    QCOMPARE(colorAt(rendered(*m_stage), {1, 50}), QColor(Qt::blue));
}

void OnboardingPageStageTest::nothingMovesWhileItIsNotShown()
{
    m_stage->hide();
    m_stage->setPage(new Page(Qt::red));
    m_stage->setPage(new Page(Qt::blue));
    QVERIFY(isAtRest());
    QTRY_COMPARE(pageCount(), 1);
}

void OnboardingPageStageTest::aPageMayReplaceItself()
{
    class Replacing final : public QWidget {
    public:
        explicit Replacing(OnboardingPageStage &stage) : m_stage(stage) {}

        void replace()
        {
            m_stage.setPage(new Page(Qt::blue));
            // Still there.
            setWindowTitle(QStringLiteral("gone"));
        }

    private:
        OnboardingPageStage &m_stage;
    };

    auto *const page = new Replacing(*m_stage);
    m_stage->setPage(page);
    page->replace();
    QTRY_COMPARE(pageCount(), 1);
}

QTEST_MAIN(OnboardingPageStageTest)
#include "OnboardingPageStageTest.moc"
