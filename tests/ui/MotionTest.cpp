#include "Motion.h"

#include <QTest>

#include <algorithm>
#include <vector>

using namespace std::chrono_literals;

class MotionTest final : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void everyCurveGoesFromNothingToAll_data();
    void everyCurveGoesFromNothingToAll();
    void endsWithItsOwner();
};

void MotionTest::everyCurveGoesFromNothingToAll_data()
{
    QTest::addColumn<Motion::Curve>("curve");
    QTest::newRow("ease-out") << Motion::Curve::EaseOut;
    QTest::newRow("ease-in-out") << Motion::Curve::EaseInOut;
    QTest::newRow("linear") << Motion::Curve::Linear;
}

void MotionTest::everyCurveGoesFromNothingToAll()
{
    QFETCH(const Motion::Curve, curve);
    QObject owner;
    std::vector<qreal> steps;
    Motion::run(
        owner, 200ms, Motion::Kind::Movement, curve, [&steps](qreal progress) { steps.push_back(progress); });
    QCOMPARE(steps.size(), std::size_t(1));
    QTRY_VERIFY(steps.back() >= 1); // exactly: what is done at the end waits for it
    QCOMPARE(steps.front(), 0.0);
    QVERIFY(std::ranges::is_sorted(steps));
    QTRY_VERIFY(owner.children().isEmpty());
}

void MotionTest::endsWithItsOwner()
{
    auto owner = std::make_unique<QObject>();
    qreal last = 0;
    Motion::run(*owner, 50ms, Motion::Kind::Fade, Motion::Curve::EaseInOut, [&last](qreal progress) {
        last = progress;
    });
    owner.reset();
    QObject other;
    qreal reference = 0;
    Motion::run(other, 100ms, Motion::Kind::Fade, Motion::Curve::Linear, [&reference](qreal progress) {
        reference = progress;
    });
    QTRY_COMPARE(reference, 1.0);
    QCOMPARE(last, 0.0);
}

QTEST_MAIN(MotionTest)
#include "MotionTest.moc"
