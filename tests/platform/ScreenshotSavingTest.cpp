#include "ScreenshotSaving.h"

#include "DesktopSession.h"
#include "TemporaryHome.h"

#include <QTest>

namespace {

const QString screengrab = QStringLiteral(".config/screengrab/screengrab.conf");
const QString cosmic = QStringLiteral(".config/cosmic/com.system76.CosmicPortal/v1/screenshot");
const QString deepin = QStringLiteral(".config/deepin/deepin-screen-recorder/deepin-screen-recorder.conf");
const QString spectacle = QStringLiteral(".config/spectaclerc");

} // namespace

/// What the desktops' own tools do with a new screenshot.
class ScreenshotSavingTest final : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void followsTheDesktopsOwnTool_data();
    void followsTheDesktopsOwnTool();
};

void ScreenshotSavingTest::followsTheDesktopsOwnTool_data()
{
    using enum ScreenshotSaving;
    QTest::addColumn<DesktopSession>("session");
    QTest::addColumn<ScreenshotSaving>("expected");
    const auto row = [](const char *name, const DesktopSession &session, ScreenshotSaving expected) {
        QTest::newRow(name) << session << expected;
    };
    row("GNOME", {.desktop = "ubuntu:GNOME"}, AtOnce);
    row("Unity", {.desktop = "Unity:Unity7:ubuntu"}, AtOnce);
    row("Budgie", {.desktop = "Budgie:GNOME"}, AtOnce);
    row("Cinnamon", {.desktop = "X-Cinnamon"}, AtOnce);
    row("Plasma", {.desktop = "KDE"}, AfterPreview);
    row("Plasma, spelled otherwise", {.desktop = "kde"}, AfterPreview);
    row("Plasma with the preview off",
        {.desktop = "KDE", .files = {{spectacle, "[General]\nautoSaveImage=true\n"}}}, AfterPreview);
    row("Xfce", {.desktop = "XFCE"}, OnRequest);
    row("MATE", {.desktop = "MATE"}, OnRequest);
    row("elementary", {.desktop = "Pantheon"}, OnRequest);
    row("LXQt", {.desktop = "LXQt"}, OnRequest);
    row("LXQt, saving by itself", {.desktop = "LXQt", .files = {{screengrab, "[Base]\nautoSave=true\n"}}},
        AtOnce);
    row("LXQt, not saving by itself",
        {.desktop = "LXQt", .files = {{screengrab, "[Base]\nautoSave=false\n"}}}, OnRequest);
    row("COSMIC", {.desktop = "COSMIC"}, AtOnce);
    row("COSMIC, clipboard",
        {.desktop = "COSMIC", .files = {{cosmic, "(\n    save_location: Clipboard,\n)"}}}, OnRequest);
    row("Deepin", {.desktop = "Deepin"}, OnRequest);
    row("Deepin, asks each time", {.desktop = "DDE", .files = {{deepin, "[shot]\nsave_op=2\nsave_ways=0\n"}}},
        OnRequest);
    row("Deepin, clipboard", {.desktop = "DDE", .files = {{deepin, "[shot]\nsave_op=0\nsave_ways=1\n"}}},
        OnRequest);
    row("Deepin, Pictures", {.desktop = "DDE", .files = {{deepin, "[shot]\nsave_op=2\nsave_ways=1\n"}}},
        AtOnce);
    row("the first desktop that is known", {.desktop = "Own:XFCE:GNOME"}, OnRequest);
    row("another desktop", {.desktop = "sway"}, Unknown);
    row("a tool that is set up there", {.desktop = "sway", .environment = {{"GRIM_DEFAULT_DIR", "%HOME%"}}},
        Unknown);
    row("no desktop", {.desktop = ""}, Unknown);
}

void ScreenshotSavingTest::followsTheDesktopsOwnTool()
{
    QFETCH(const DesktopSession, session);
    QFETCH(const ScreenshotSaving, expected);
    const TemporaryHome home;
    session.start(home);
    QCOMPARE(screenshotSaving(), expected);
}

QTEST_GUILESS_MAIN(ScreenshotSavingTest)
#include "ScreenshotSavingTest.moc"
