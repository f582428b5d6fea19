#include "SettingsRow.h"

#include "Switch.h"
#include "TextLabel.h"

#include <QTest>

#include <memory>
#include <optional>

namespace {

constexpr int rowWidth = 400;

/// A switch is 38 by 22 points, without the outset of 4 on each side.
struct Made {
    explicit Made(const std::optional<QString> &subtitle, Qt::LayoutDirection direction = Qt::LeftToRight)
        : control(new Switch),
          row(std::make_unique<SettingsRow>(QStringLiteral("Title"), subtitle, control))
    {
        row->setLayoutDirection(direction);
        row->resize(rowWidth, row->heightForWidth(rowWidth));
        row->show();
    }

    [[nodiscard]] QRect textAt(qsizetype index) const
    {
        return row->findChildren<TextLabel *>().at(index)->geometry();
    }

    Switch *control;
    std::unique_ptr<SettingsRow> row;
};

} // namespace

/// Texts at one side, a control at the other.
class SettingsRowTest final : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void hasTheGivenMeasures();
    void withoutASubtitleItsPartsAreInTheMiddle();
    void aLongSubtitleMakesItHigher();
    void isMirroredFromRightToLeft();
    void itsTextsNameTheControl();
};

void SettingsRowTest::hasTheGivenMeasures()
{
    const Made made(QStringLiteral("Subtitle"));
    QCOMPARE(made.row->height(), 10 + 16 + 3 + 13 + 10);
    QCOMPARE(made.textAt(0), QRect(12, 10, 400 - 12 - 12 - 38 - 12, 16));
    QCOMPARE(made.textAt(1), QRect(12, 10 + 16 + 3, 400 - 12 - 12 - 38 - 12, 13));
    QCOMPARE(made.control->geometry(), QRect(400 - 12 - 38 - 4, 10 - 4, 38 + 8, 22 + 8));
}

void SettingsRowTest::withoutASubtitleItsPartsAreInTheMiddle()
{
    const Made made(std::nullopt);
    QCOMPARE(made.row->height(), 10 + 22 + 10);
    QCOMPARE(made.textAt(0), QRect(12, 13, 400 - 12 - 12 - 38 - 12, 16));
    QCOMPARE(made.control->geometry(), QRect(400 - 12 - 38 - 4, 10 - 4, 38 + 8, 22 + 8));
}

void SettingsRowTest::aLongSubtitleMakesItHigher()
{
    const Made made(QStringLiteral("a long sentence ").repeated(20));
    const int lines = made.textAt(1).height() / 13;
    QVERIFY(lines > 2);
    QCOMPARE(made.textAt(1).height(), lines * 13);
    QCOMPARE(made.row->height(), 10 + 16 + 3 + lines * 13 + 10);
    QCOMPARE(made.control->geometry().top(), 10 - 4);
}

void SettingsRowTest::isMirroredFromRightToLeft()
{
    const Made made(QStringLiteral("Subtitle"), Qt::RightToLeft);
    QCOMPARE(made.textAt(0), QRect(12 + 38 + 12, 10, 400 - 12 - 12 - 38 - 12, 16));
    QCOMPARE(made.textAt(1), QRect(12 + 38 + 12, 29, 400 - 12 - 12 - 38 - 12, 13));
    QCOMPARE(made.control->geometry(), QRect(12 - 4, 10 - 4, 38 + 8, 22 + 8));
}

void SettingsRowTest::itsTextsNameTheControl()
{
    const Made made(QStringLiteral("Subtitle"));
    QCOMPARE(made.control->accessibleName(), QStringLiteral("Title"));
    QCOMPARE(made.control->accessibleDescription(), QStringLiteral("Subtitle"));
    made.row->setTexts(QStringLiteral("Another"), QStringLiteral("Other words"));
    QCOMPARE(made.control->accessibleName(), QStringLiteral("Another"));
    QCOMPARE(made.control->accessibleDescription(), QStringLiteral("Other words"));
}

QTEST_MAIN(SettingsRowTest)
#include "SettingsRowTest.moc"
