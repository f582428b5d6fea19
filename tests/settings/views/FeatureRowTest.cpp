#include "FeatureRow.h"

#include "TextLabel.h"
#include "Theme.h"
#include "rendering.h"

#include <QTest>

#include <memory>

namespace {

constexpr int rowWidth = 400;
constexpr int badgeSide = 20;

/// The columns from `left` on are the badge's ground, and those beside them aren't painted.
void verifyBadgeAt(int left, FeatureRow &row)
{
    const QImage image = rendered(row);
    const int middle = row.height() / 2;
    QCOMPARE(image.pixelColor(left - 1, middle).alpha(), 0);
    QVERIFY(image.pixelColor(left, middle).alpha() > 200);
    QVERIFY(image.pixelColor(left + badgeSide - 1, middle).alpha() > 200);
    QCOMPARE(image.pixelColor(left + badgeSide, middle).alpha(), 0);
}

} // namespace

/// A badge and a sentence, from left to right and from right to left.
class FeatureRowTest final : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void hasTheGivenMeasures();
    void isMirroredFromRightToLeft();
    void isAsHighAsALongText();

private:
    [[nodiscard]] static std::unique_ptr<FeatureRow>
    made(Qt::LayoutDirection direction, const QString &text = QStringLiteral("Deletes"));
};

std::unique_ptr<FeatureRow> FeatureRowTest::made(Qt::LayoutDirection direction, const QString &text)
{
    auto row = std::make_unique<FeatureRow>(
        SettingsIconBadge{QStringLiteral("timer"), &Theme::blue, badgeSide}, text);
    row->setLayoutDirection(direction);
    row->resize(rowWidth, row->heightForWidth(rowWidth));
    row->show();
    return row;
}

void FeatureRowTest::hasTheGivenMeasures()
{
    const auto row = made(Qt::LeftToRight);
    QCOMPARE(row->height(), 8 + 20 + 8);
    QCOMPARE(row->findChild<TextLabel *>()->geometry(), QRect(44, 8, 400 - 44 - 12, 20));
    verifyBadgeAt(12, *row);
}

void FeatureRowTest::isMirroredFromRightToLeft()
{
    const auto row = made(Qt::RightToLeft);
    QCOMPARE(row->findChild<TextLabel *>()->geometry(), QRect(12, 8, 400 - 44 - 12, 20));
    verifyBadgeAt(400 - 12 - 20, *row);
}

void FeatureRowTest::isAsHighAsALongText()
{
    const auto row = made(Qt::LeftToRight, QStringLiteral("a long sentence ").repeated(20));
    const auto *const label = row->findChild<TextLabel *>();
    QVERIFY(label->height() > 60);
    QCOMPARE(row->height(), 8 + label->heightForWidth(400 - 44 - 12) + 8);
}

QTEST_MAIN(FeatureRowTest)
#include "FeatureRowTest.moc"
