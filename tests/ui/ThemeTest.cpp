#include "Theme.h"
#include "rendering.h"

#include <QTest>

namespace {

constexpr qreal readable = 4.5;

struct Pair {
    const char *name;
    QColor text;
    QColor ground;
};

/// What is written on what, in every state that a ground has.
QList<Pair> writtenOn(const Theme &theme)
{
    const QColor quietHover = composited(theme.quietHover, theme.popover);
    const QColor quietPressed = composited(theme.quietPressed, theme.popover);
    const QColor banner = composited(theme.bannerFill, theme.window);
    const QColor bannerHover = composited(theme.bannerHover, theme.window);
    return {
        {"text on window", theme.primary, theme.window},
        {"text on sidebar", theme.primary, theme.sidebar},
        {"text on card", theme.primary, theme.controlBackground},
        {"text on popover", theme.primary, theme.popover},
        {"second text on window", theme.secondary, theme.window},
        {"second text on sidebar", theme.secondary, theme.sidebar},
        {"second text on card", theme.secondary, theme.controlBackground},
        {"second text on popover", theme.secondary, theme.popover},
        {"label on button", theme.primary, theme.face},
        {"label on hovered button", theme.primary, theme.faceHover},
        {"label on pressed button", theme.primary, theme.facePressed},
        {"label on accent", theme.onAccent, theme.accent},
        {"label on hovered accent", theme.onAccent, theme.accentHover},
        {"label on pressed accent", theme.onAccent, theme.accentPressed},
        {"label on red", theme.onAccent, theme.red},
        {"label on hovered red", theme.onAccent, theme.redHover},
        {"label on pressed red", theme.onAccent, theme.redPressed},
        {"blue text on popover", theme.blueText, theme.popover},
        {"blue text on hovered plain button", theme.blueText, quietHover},
        {"blue text on pressed plain button", theme.blueText, quietPressed},
        {"red text on popover", theme.redText, theme.popover},
        {"green text on card", theme.greenText, theme.controlBackground},
        {"text on banner", theme.primary, banner},
        {"text on hovered banner", theme.primary, bannerHover},
        {"second text on banner", theme.secondary, banner},
        {"label on what is done, in amber", theme.amberInk, composited(theme.amberTint, theme.window)},
    };
}

} // namespace

class ThemeTest final : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void everyTextCanBeRead_data();
    void everyTextCanBeRead();
    void contrastIsMeasuredAsWcagDoes();
    void colorsHaveTheirValues();
    void moreContrastDrawsSecondTextLikeTheFirst();
    void moreContrastDrawsLabelsOnAmberDark_data();
    void moreContrastDrawsLabelsOnAmberDark();
};

void ThemeTest::everyTextCanBeRead_data()
{
    QTest::addColumn<Theme::Scheme>("scheme");
    QTest::addColumn<QColor>("accent");
    for (const Theme::Scheme scheme : {Theme::Scheme::Light, Theme::Scheme::Dark}) {
        const char *look = scheme == Theme::Scheme::Light ? "light" : "dark";
        QTest::addRow("%s, no accent", look) << scheme << QColor();
        QTest::addRow("%s, yellow accent", look) << scheme << QColor(0xF6, 0xD3, 0x2D);
        QTest::addRow("%s, white accent", look) << scheme << QColor(Qt::white);
        QTest::addRow("%s, green accent", look) << scheme << QColor(0x3A, 0x94, 0x4A);
        QTest::addRow("%s, black accent", look) << scheme << QColor(Qt::black);
    }
}

void ThemeTest::everyTextCanBeRead()
{
    QFETCH(const Theme::Scheme, scheme);
    QFETCH(const QColor, accent);
    const Theme theme = Theme::make(scheme, accent.isValid() ? std::optional<QColor>(accent) : std::nullopt);
    for (const Pair &pair : writtenOn(theme)) {
        const qreal contrast = contrastRatio(pair.text, pair.ground);
        QVERIFY2(
            contrast >= readable,
            qPrintable(QStringLiteral("%1: %2").arg(QLatin1String(pair.name)).arg(contrast)));
    }
}

void ThemeTest::contrastIsMeasuredAsWcagDoes()
{
    QCOMPARE(contrastRatio(Qt::white, Qt::black), 21.0);
    QCOMPARE(contrastRatio(Qt::white, Qt::white), 1.0);
    // The greatest gray on white that the guidelines' own examples call readable.
    QVERIFY(contrastRatio(QColor(0x76, 0x76, 0x76), Qt::white) >= readable);
    QVERIFY(contrastRatio(QColor(0x77, 0x77, 0x77), Qt::white) < readable);
}

void ThemeTest::colorsHaveTheirValues()
{
    const Theme light = Theme::make(Theme::Scheme::Light);
    const Theme dark = Theme::make(Theme::Scheme::Dark);
    QCOMPARE(light.popover, QColor(0xFB, 0xFB, 0xFC));
    QCOMPARE(dark.popover, QColor(0x2A, 0x2C, 0x30));
    QCOMPARE(light.separator, QColor(0, 0, 0, 26));
    QCOMPARE(dark.border, QColor(255, 255, 255, 33));
    QCOMPARE(light.accent, QColor(0x2F, 0x6B, 0xDE));
    QCOMPARE(dark.redPressed, QColor(0xAD, 0x33, 0x2D));
    for (const Theme &theme : {light, dark}) {
        QVERIFY(isNearly(theme.amber, QColor::fromRgbF(0.9098F, 0.6392F, 0.2353F)));
        QCOMPARE(theme.onAmber, QColor(Qt::white));
        QCOMPARE(theme.onAmberShadow, QColor(0x5C, 0x36, 0x00, 140));
    }
}

void ThemeTest::moreContrastDrawsSecondTextLikeTheFirst()
{
    const Theme theme = Theme::make(Theme::Scheme::Light, std::nullopt, Theme::Contrast::Increased);
    QCOMPARE(theme.secondary, theme.primary);
    QVERIFY(contrastRatio(composited(theme.border, theme.popover), theme.popover) >= 3);
}

void ThemeTest::moreContrastDrawsLabelsOnAmberDark_data()
{
    QTest::addColumn<Theme::Scheme>("scheme");
    QTest::newRow("light") << Theme::Scheme::Light;
    QTest::newRow("dark") << Theme::Scheme::Dark;
}

void ThemeTest::moreContrastDrawsLabelsOnAmberDark()
{
    QFETCH(const Theme::Scheme, scheme);
    const Theme theme = Theme::make(scheme, std::nullopt, Theme::Contrast::Increased);
    QCOMPARE(theme.onAmber, QColor(0x2A, 0x1B, 0x00));
    QCOMPARE(theme.onAmberShadow.alpha(), 0);
    for (const QColor &face : {theme.amber, theme.amberHover}) {
        QVERIFY(contrastRatio(theme.onAmber, face) >= 7);
    }
}

QTEST_GUILESS_MAIN(ThemeTest)
#include "ThemeTest.moc"
