#include "DampedSpring.h"

#include <QTest>

#include <algorithm>
#include <cmath>
#include <numbers>
#include <vector>

namespace {

constexpr double tolerance = 0.001;
/// In seconds.
constexpr double frame = 1.0 / 60;

struct Motion {
    double position = 0;
    double speed = 0;
};

/// x'' for the spring's equation.
double acceleration(const Motion &motion, double frequency, double dampingFraction)
{
    return -frequency * frequency * (motion.position - 1) - 2 * dampingFraction * frequency * motion.speed;
}

/// Where it is after so many seconds, by the classical fourth-order method in small steps.
double integrated(double seconds, double response, double dampingFraction)
{
    constexpr double wantedStep = 1e-4;
    const double frequency = 2 * std::numbers::pi / response;
    const int steps = std::max(1, static_cast<int>(std::ceil(seconds / wantedStep)));
    const double step = seconds / steps;
    const auto slope = [&](const Motion &motion) {
        return Motion{motion.speed, acceleration(motion, frequency, dampingFraction)};
    };
    const auto moved = [](const Motion &from, const Motion &by, double time) {
        return Motion{from.position + by.position * time, from.speed + by.speed * time};
    };
    Motion motion;
    for (int index = 0; index < steps; ++index) {
        const Motion first = slope(motion);
        const Motion second = slope(moved(motion, first, step / 2));
        const Motion third = slope(moved(motion, second, step / 2));
        const Motion fourth = slope(moved(motion, third, step));
        motion.position +=
            step / 6 * (first.position + 2 * second.position + 2 * third.position + fourth.position);
        motion.speed += step / 6 * (first.speed + 2 * second.speed + 2 * third.speed + fourth.speed);
    }
    return motion.position;
}

/// From `first` to before `end`, in seconds.
std::vector<double> times(double first, double end, double step)
{
    std::vector<double> all(static_cast<std::size_t>(std::ceil((end - first) / step)));
    for (std::size_t index = 0; index < all.size(); ++index) {
        all[index] = first + static_cast<double>(index) * step;
    }
    return all;
}

} // namespace

class DampedSpringTest final : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void movesAsTheEquationSays_data();
    void movesAsTheEquationSays();
    void movesAsTheWrittenOutSolution();
    void swingsOnceVisiblyBeyondTheEnd();
    void staysWithinTheToleranceOnceSettled_data();
    void staysWithinTheToleranceOnceSettled();
    void startsAtRest();
};

void DampedSpringTest::movesAsTheEquationSays_data()
{
    QTest::addColumn<double>("response");
    QTest::addColumn<double>("dampingFraction");
    QTest::newRow("the welcome icon's") << 0.5 << 0.6;
    QTest::newRow("hardly damped") << 0.5 << 0.05;
    QTest::newRow("as fast as possible without swinging") << 0.5 << 1.0;
    QTest::newRow("slower than that") << 0.5 << 2.5;
    QTest::newRow("longer swings") << 2.0 << 0.6;
}

void DampedSpringTest::movesAsTheEquationSays()
{
    QFETCH(const double, response);
    QFETCH(const double, dampingFraction);
    const DampedSpring spring(response, dampingFraction);
    constexpr double difference = 1e-8;
    for (const double seconds : times(frame, 1.5, 5 * frame)) {
        const double expected = integrated(seconds, response, dampingFraction);
        QVERIFY2(
            std::abs(spring.position(seconds) - expected) < difference,
            qPrintable(
                QStringLiteral("%1 s: %2 for %3").arg(seconds).arg(spring.position(seconds)).arg(expected)));
    }
}

/// With the numbers put in: ω = 4π, ζω = 2.4π, the damped frequency 3.2π.
void DampedSpringTest::movesAsTheWrittenOutSolution()
{
    const DampedSpring spring(0.5, 0.6);
    constexpr double pi = std::numbers::pi;
    for (const double seconds : times(0, 1.5, frame)) {
        const double expected = 1 - std::exp(-2.4 * pi * seconds) *
                                        (std::cos(3.2 * pi * seconds) + 0.75 * std::sin(3.2 * pi * seconds));
        QVERIFY(std::abs(spring.position(seconds) - expected) < 1e-12);
    }
}

void DampedSpringTest::swingsOnceVisiblyBeyondTheEnd()
{
    const DampedSpring spring(0.5, 0.6);
    double peak = 0;
    double peakTime = 0;
    for (const double seconds : times(0, 1.5, 0.001)) {
        if (spring.position(seconds) > peak) {
            peak = spring.position(seconds);
            peakTime = seconds;
        }
    }
    QVERIFY(std::abs(peakTime - 0.3125) < 0.002);
    // Of an icon that grows from 0.8.
    QVERIFY(std::abs(0.8 + 0.2 * peak - 1.019) < 0.001);
}

void DampedSpringTest::staysWithinTheToleranceOnceSettled_data()
{
    movesAsTheEquationSays_data();
}

void DampedSpringTest::staysWithinTheToleranceOnceSettled()
{
    QFETCH(const double, response);
    QFETCH(const double, dampingFraction);
    const DampedSpring spring(response, dampingFraction);
    const double settled = spring.settlingTime(tolerance);
    for (const double seconds : times(settled, settled + 3 * response, 0.001)) {
        QVERIFY(std::abs(spring.position(seconds) - 1) <= tolerance);
    }
    // No more than one swing too late.
    double farthest = 0;
    for (const double seconds : times(std::max(0.0, settled - response), settled, 0.001)) {
        farthest = std::max(farthest, std::abs(spring.position(seconds) - 1));
    }
    QVERIFY(farthest > tolerance);
}

void DampedSpringTest::startsAtRest()
{
    const DampedSpring spring(0.5, 0.6);
    QCOMPARE(spring.position(0), 0.0);
    QCOMPARE(spring.position(-1), 0.0);
    QVERIFY(spring.position(1e-3) < 1e-4);
}

QTEST_GUILESS_MAIN(DampedSpringTest)
#include "DampedSpringTest.moc"
