#include "screenshotAdvice.h"

#include "DesktopSession.h"
#include "SystemScreenshotPreview.h"
#include "TemporaryHome.h"
#include "isScreenshot.h"

#include <QTest>

namespace {

const QString spectacle = QStringLiteral(".config/spectaclerc");
const QString flameshot = QStringLiteral(".config/flameshot/flameshot.ini");

/// What two lines have room for, of letters as they come in texts.
constexpr qsizetype twoLines = 106;

} // namespace

/// What the last first-run page adds on desktops whose tool doesn't save by itself.
class screenshotAdviceTest final : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void everyDesktopHasItsOwn_data();
    void everyDesktopHasItsOwn();
    void theNameThatFlameshotIsToGiveIsRecognized();
};

void screenshotAdviceTest::everyDesktopHasItsOwn_data()
{
    QTest::addColumn<DesktopSession>("session");
    QTest::addColumn<QString>("part");
    const auto row = [](const char *name, const DesktopSession &session, const char *part) {
        QTest::newRow(name) << session << QString::fromUtf8(part);
    };
    constexpr const char *nothing = "";
    row("GNOME", {.desktop = "GNOME"}, nothing);
    row("Cinnamon", {.desktop = "X-Cinnamon"}, nothing);
    row("COSMIC", {.desktop = "COSMIC"}, nothing);
    row("Plasma", {.desktop = "KDE"},
        "turn on “Disable floating screenshot preview” in Deskbroom's settings");
    row("Plasma without the preview",
        {.desktop = "KDE", .files = {{spectacle, "[General]\nautoSaveImage=true\n"}}}, nothing);
    row("Xfce", {.desktop = "XFCE"}, "When Xfce asks where to save a screenshot, press Save");
    row("MATE", {.desktop = "MATE"}, "When MATE asks where to save a screenshot, press Save");
    row("elementary", {.desktop = "Pantheon"}, "When elementary asks where to save a screenshot, press Save");
    row("LXQt", {.desktop = "LXQt"}, "Save each screenshot in your screenshot tool");
    row("Deepin", {.desktop = "Deepin"}, "Save each screenshot in your screenshot tool");
    row("another desktop", {.desktop = "sway"}, nothing);
    row("another desktop with Flameshot",
        {.desktop = "sway", .files = {{flameshot, "[General]\nsavePath=%HOME%\n"}}}, "“flameshot”");
    row("another desktop with a tool that saves",
        {.desktop = "sway", .environment = {{"GRIM_DEFAULT_DIR", "%HOME%"}}}, nothing);
    row("a desktop with its own tool, and Flameshot",
        {.desktop = "GNOME", .files = {{flameshot, "[General]\nsavePath=%HOME%\n"}}}, nothing);
}

void screenshotAdviceTest::everyDesktopHasItsOwn()
{
    QFETCH(const DesktopSession, session);
    QFETCH(const QString, part);
    const TemporaryHome home;
    session.start(home);
    const QString advice = screenshotAdvice();
    QCOMPARE(advice.isEmpty(), part.isEmpty());
    QVERIFY2(advice.contains(part), qPrintable(advice));
    QVERIFY2(advice.size() <= twoLines, qPrintable(advice));
    QVERIFY2(advice.count(QStringLiteral(". ")) == 0, "it is one sentence");
}

void screenshotAdviceTest::theNameThatFlameshotIsToGiveIsRecognized()
{
    QVERIFY(!isScreenshot(u"2024-05-01_10-11.png"));
    QVERIFY(isScreenshot(u"flameshot 2024-05-01_10-11.png"));
}

QTEST_GUILESS_MAIN(screenshotAdviceTest)
#include "screenshotAdviceTest.moc"
