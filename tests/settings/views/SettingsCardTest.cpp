#include "SettingsCard.h"

#include "TextLabel.h"
#include "Theme.h"
#include "rendering.h"

#include <QTest>

#include <memory>
#include <optional>

namespace {

constexpr QSize contentSize(200, 60);

/// A card as wide as its content, and as high as it has to be.
struct Made {
    explicit Made(const std::optional<QString> &title)
        : content(new QWidget),
          card(std::make_unique<SettingsCard>(title, content))
    {
        content->setFixedSize(contentSize);
        card->resize(card->sizeHint());
        card->show();
    }

    QWidget *content;
    std::unique_ptr<SettingsCard> card;
};

} // namespace

/// A panel around its content, with and without a title.
class SettingsCardTest final : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void hasTheGivenMeasures();
    void withoutATitleThePanelIsAllOfIt();
    void thePanelHasABorderAndRoundCorners_data();
    void thePanelHasABorderAndRoundCorners();
};

void SettingsCardTest::hasTheGivenMeasures()
{
    const Made made(QStringLiteral("Folder Access"));
    const auto *const title = made.card->findChild<TextLabel *>();
    QCOMPARE(title->text(), QStringLiteral("FOLDER ACCESS"));
    QCOMPARE(title->geometry(), QRect(4, 0, 200 - 4 - 4, 13));
    QCOMPARE(made.content->geometry(), QRect(0, 13 + 6, 200, 60));
    QCOMPARE(made.card->size(), QSize(200, 13 + 6 + 60));
}

void SettingsCardTest::withoutATitleThePanelIsAllOfIt()
{
    const Made made(std::nullopt);
    QVERIFY(made.card->findChild<TextLabel *>() == nullptr);
    QCOMPARE(made.content->geometry(), QRect(0, 0, 200, 60));
    QCOMPARE(made.card->size(), QSize(200, 60));
}

void SettingsCardTest::thePanelHasABorderAndRoundCorners_data()
{
    QTest::addColumn<ScopedLook::Look>("look");
    QTest::newRow("light") << ScopedLook::Look::Light;
    QTest::newRow("dark") << ScopedLook::Look::Dark;
}

void SettingsCardTest::thePanelHasABorderAndRoundCorners()
{
    QFETCH(const ScopedLook::Look, look);
    const ScopedLook scoped(look);
    const Made made(QStringLiteral("Title"));
    const Theme &theme = Theme::current();
    QColor border = theme.primary;
    border.setAlphaF(0.06F);
    // With two pixels to a point the border is a pixel wide.
    const QImage image = rendered(*made.card, 2);
    const int top = 2 * (13 + 6);
    QCOMPARE(image.pixelColor(200, top - 1).alpha(), 0);
    QVERIFY(isNearly(image.pixelColor(200, top), composited(border, theme.controlBackground)));
    QVERIFY(isNearly(image.pixelColor(200, top + 1), theme.controlBackground));
    QVERIFY(isNearly(image.pixelColor(0, top + 60), composited(border, theme.controlBackground)));
    QVERIFY(isNearly(image.pixelColor(1, top + 60), theme.controlBackground));
    // A radius of 10 cuts 2.9 points of each edge from the corner.
    QCOMPARE(image.pixelColor(4, top + 4).alpha(), 0);
    QCOMPARE(image.pixelColor(7, top + 7).alpha(), 255);
}

QTEST_MAIN(SettingsCardTest)
#include "SettingsCardTest.moc"
