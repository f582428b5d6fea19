#include "FileManager.h"

#include "DesktopSession.h"
#include "TemporaryHome.h"
#include "files.h"

#include <QFileInfo>
#include <QTest>

#include <clocale>
#include <optional>

namespace {

const QString userDirectories = QStringLiteral(".config/user-dirs.dirs");
const QString spectacle = QStringLiteral(".config/spectaclerc");
const QString xfce = QStringLiteral(".config/xfce4/xfce4-screenshooter");
const QString screengrab = QStringLiteral(".config/screengrab/screengrab.conf");
const QString cosmic = QStringLiteral(".config/cosmic/com.system76.CosmicPortal/v1/screenshot");
const QString deepin = QStringLiteral(".config/deepin/deepin-screen-recorder/deepin-screen-recorder.conf");
const QString flameshot = QStringLiteral(".config/flameshot/flameshot.ini");
const QString ksnip = QStringLiteral(".config/ksnip/ksnip.conf");
const QString shutter = QStringLiteral(".shutter/settings.xml");

const QString desktop = QStringLiteral("/Desktop");
const QString pictures = QStringLiteral("/Pictures");
const QString screenshots = QStringLiteral("/Pictures/Screenshots");
const QString shots = QStringLiteral("/My shots");

DesktopSession::Setting gnomeScreenshot(const QString &value)
{
    return {QStringLiteral("org.gnome.gnome-screenshot"), QStringLiteral("auto-save-directory"), value};
}

DesktopSession::Setting mateScreenshot(const QString &value)
{
    return {QStringLiteral("org.mate.screenshot"), QStringLiteral("last-save-directory"), value};
}

DesktopSession::Setting elementaryScreenshot(const QString &value)
{
    return {QStringLiteral("io.elementary.screenshot"), QStringLiteral("folder-dir"), value};
}

/// The schemas of programs that Debian 12 doesn't have, or that the tests don't install.
constexpr char otherSchemas[] = R"(
  <schema id="io.elementary.screenshot" path="/io/elementary/screenshot/">
    <key name="folder-dir" type="s"><default>''</default></key>
  </schema>
  <schema id="org.mate.caja.preferences" path="/org/mate/caja/preferences/">
    <key name="desktop-is-home-dir" type="b"><default>false</default></key>
  </schema>
)";

/// The one folder with the role *Desktop*, or an empty path.
QString desktopFolder()
{
    const QList<QUrl> urls = FileManager::defaultManager().urls(SearchPathDirectory::Desktop);
    return urls.size() == 1 ? urls.constFirst().toLocalFile() : QString();
}

void addRow(const char *name, const DesktopSession &session)
{
    QTest::newRow(name) << session;
}

/// Makes gettext look at the environment again; programs have their language from the start.
void setLanguage(const QByteArray &language)
{
    qputenv("LANGUAGE", language);
    std::setlocale(LC_ALL, "");
}

} // namespace

/// Where the session's capture tool saves: which desktop, which tool, which folder.
class CaptureToolsTest final : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void init();
    void followsTheDesktopsOwnTool_data();
    void followsTheDesktopsOwnTool();
    void followsTheToolThatIsSetUp_data();
    void followsTheToolThatIsSetUp();
    void takesTheDefaultWithoutTheToolsSchema();
    void callsTheFolderAsTheShellDoes_data();
    void callsTheFolderAsTheShellDoes();
    void makesTheFolderIfTheToolWould_data();
    void makesTheFolderIfTheToolWould();

private:
    std::optional<PrivateSettings> m_settings;
};

void CaptureToolsTest::initTestCase()
{
    m_settings.emplace(otherSchemas);
}

void CaptureToolsTest::init()
{
    m_settings->show();
    // The one locale that every machine has in which gettext looks at LANGUAGE.
    qputenv("LC_ALL", "C.UTF-8");
    setLanguage("");
}

void CaptureToolsTest::followsTheDesktopsOwnTool_data()
{
    QTest::addColumn<DesktopSession>("session");
    const QStringList own{QStringLiteral("My shots")};
    const DesktopSession::Files noPictures{{userDirectories, "XDG_DOWNLOAD_DIR=\"$HOME/Downloads\"\n"}};

    addRow("GNOME", {.desktop = "GNOME", .expected = screenshots});
    addRow("GNOME, Ubuntu's", {.desktop = "ubuntu:GNOME", .expected = screenshots});
    addRow("GNOME, spelled otherwise", {.desktop = "gnome", .expected = screenshots});
    addRow(
        "GNOME without a Pictures folder",
        {.desktop = "GNOME", .files = noPictures, .expected = QStringLiteral("/Screenshots")});
    addRow(
        "GNOME with another Pictures folder",
        {.desktop = "GNOME",
         .files = {{userDirectories, "XDG_PICTURES_DIR=\"$HOME/Bilder\"\n"}},
         .expected = QStringLiteral("/Bilder/Screenshots")});
    addRow("Unity", {.desktop = "Unity:Unity7:ubuntu", .expected = screenshots});
    addRow("Budgie", {.desktop = "Budgie:GNOME", .expected = screenshots});
    addRow(
        "GNOME, with other tools set up", {.desktop = "GNOME",
                                           .files = {{flameshot, "[General]\nsavePath=%HOME%/My shots\n"}},
                                           .environment = {{"XDG_SCREENSHOTS_DIR", "%HOME%/My shots"}},
                                           .folders = own,
                                           .expected = screenshots});

    addRow("KDE, nothing set", {.desktop = "KDE", .expected = pictures});
    addRow(
        "KDE, nothing set, no Pictures folder",
        {.desktop = "KDE", .files = noPictures, .expected = pictures});
    addRow(
        "KDE, first start",
        {.desktop = "KDE",
         .files = {{spectacle, "[ImageSave]\ntranslatedScreenshotsFolder=Bildschirmfotos\n"}},
         .expected = QStringLiteral("/Pictures/Bildschirmfotos")});
    addRow(
        "KDE, a first start's name that is a path",
        {.desktop = "KDE",
         .files = {{spectacle, "[ImageSave]\ntranslatedScreenshotsFolder=../Downloads\n"}},
         .expected = desktop});
    addRow(
        "KDE, folder chosen", {.desktop = "KDE",
                               .files =
                                   {{spectacle, "[ImageSave]\nimageSaveLocation=file://%HOME%/My%20shots/\n"
                                                "translatedScreenshotsFolder=Screenshots\n"}},
                               .folders = own,
                               .expected = shots});
    addRow(
        "KDE, folder chosen and stored with a variable",
        {.desktop = "KDE",
         .files = {{spectacle, "[ImageSave]\nimageSaveLocation[$e]=file://$HOME/My shots\n"}},
         .folders = own,
         .expected = shots});
    addRow(
        "KDE, chosen before 24.02",
        {.desktop = "KDE",
         .files = {{spectacle, "[Save]\ndefaultSaveLocation=file://%HOME%/My%20shots\n"}},
         .folders = own,
         .expected = shots});
    addRow(
        "KDE, chosen before 24.02 as a path",
        {.desktop = "KDE",
         .files = {{spectacle, "[Save]\ndefaultSaveLocation[$e]=$HOME/My shots/\n"}},
         .folders = own,
         .expected = shots});
    addRow(
        "KDE, chosen before and since 24.02",
        {.desktop = "KDE",
         .files =
             {{spectacle, "[Save]\ndefaultSaveLocation=file://%HOME%/Downloads\n[ImageSave]\n"
                          "imageSaveLocation=file://%HOME%/My%20shots\n"}},
         .folders = own,
         .expected = shots});

    addRow("Xfce, nothing set", {.desktop = "XFCE", .expected = pictures});
    addRow("Xfce without a Pictures folder", {.desktop = "XFCE", .files = noPictures});
    addRow(
        "Xfce, folder chosen",
        {.desktop = "XFCE",
         .files = {{xfce, "app=none\nscreenshot_dir=file://%HOME%/My%20shots\ntimestamp=true\n"}},
         .folders = own,
         .expected = shots});

    addRow("MATE, nothing set", {.desktop = "MATE", .expected = desktop});
    addRow(
        "MATE, saved before", {.desktop = "MATE",
                               .settings = {mateScreenshot(QStringLiteral("'file://%HOME%/My%20shots'"))},
                               .folders = own,
                               .expected = shots});
    addRow(
        "MATE, the home folder is the desktop",
        {.desktop = "MATE",
         .settings = {
             {QStringLiteral("org.mate.caja.preferences"), QStringLiteral("desktop-is-home-dir"),
              QStringLiteral("true")}}});

    addRow("Cinnamon, nothing set", {.desktop = "X-Cinnamon", .expected = pictures});
    addRow("Cinnamon without a Pictures folder", {.desktop = "X-Cinnamon", .files = noPictures});
    addRow(
        "Cinnamon, path", {.desktop = "X-Cinnamon",
                           .settings = {gnomeScreenshot(QStringLiteral("'%HOME%/My shots/'"))},
                           .folders = own,
                           .expected = shots});
    addRow(
        "Cinnamon, path in the home folder", {.desktop = "X-Cinnamon",
                                              .settings = {gnomeScreenshot(QStringLiteral("'~/My shots'"))},
                                              .folders = own,
                                              .expected = shots});
    addRow(
        "Cinnamon, URL", {.desktop = "X-Cinnamon",
                          .settings = {gnomeScreenshot(QStringLiteral("'file://%HOME%/My%20shots'"))},
                          .folders = own,
                          .expected = shots});

    addRow("LXQt, nothing set", {.desktop = "LXQt"});
    addRow(
        "LXQt, folder chosen", {.desktop = "LXQt",
                                .files = {{screengrab, "[Base]\ndefDir=%HOME%/My shots/\n"}},
                                .folders = own,
                                .expected = shots});

    addRow("elementary, nothing set", {.desktop = "Pantheon", .expected = screenshots});
    addRow(
        "elementary, folder chosen", {.desktop = "Pantheon",
                                      .settings = {elementaryScreenshot(QStringLiteral("'%HOME%/My shots'"))},
                                      .folders = own,
                                      .expected = shots});

    addRow("COSMIC, nothing set", {.desktop = "COSMIC", .expected = screenshots});
    addRow(
        "COSMIC, Pictures",
        {.desktop = "COSMIC",
         .files = {{cosmic, "(\n    save_location: Pictures,\n    choice: Rectangle,\n)\n"}},
         .expected = screenshots});
    addRow(
        "COSMIC, a folder in the environment", {.desktop = "COSMIC",
                                                .environment = {{"XDG_SCREENSHOTS_DIR", "%HOME%/My shots"}},
                                                .expected = shots});
    addRow(
        "COSMIC, Documents", {.desktop = "COSMIC",
                              .files = {{cosmic, "(save_location:Documents)"}},
                              .expected = QStringLiteral("/Documents")});
    addRow(
        "COSMIC, clipboard",
        {.desktop = "COSMIC", .files = {{cosmic, "(save_location: Clipboard)"}}, .expected = desktop});

    addRow("Deepin, nothing set", {.desktop = "Deepin", .expected = desktop});
    addRow(
        "Deepin, clipboard",
        {.desktop = "DDE", .files = {{deepin, "[shot]\nsave_op=0\nsave_ways=1\n"}}, .expected = desktop});
    addRow(
        "Deepin, desktop",
        {.desktop = "DDE", .files = {{deepin, "[shot]\nsave_op=1\nsave_ways=1\n"}}, .expected = desktop});
    addRow(
        "Deepin, Pictures",
        {.desktop = "DDE", .files = {{deepin, "[shot]\nsave_op=2\nsave_ways=1\n"}}, .expected = screenshots});
    addRow(
        "Deepin, folder chosen",
        {.desktop = "Deepin",
         .files = {{deepin, "[shot]\nsave_dir=%HOME%/My shots\nsave_op=3\nsave_ways=1\n"}},
         .folders = own,
         .expected = shots});
    addRow(
        "Deepin, asks each time",
        {.desktop = "Deepin",
         .files = {{deepin, "[shot]\nsave_ask_dir=%HOME%/My shots\nsave_op=2\nsave_ways=0\n"}},
         .folders = own,
         .expected = shots});
}

void CaptureToolsTest::followsTheDesktopsOwnTool()
{
    QFETCH(const DesktopSession, session);
    const TemporaryHome home;
    session.start(home);
    QCOMPARE(desktopFolder(), QString(home.path() + session.expected));
    FileManager::defaultManager().makeDesktop();
    QVERIFY(QFileInfo(desktopFolder()).isDir());
    QCOMPARE(FileManager::defaultManager().isDesktopElsewhere(), session.expected != desktop);
}

void CaptureToolsTest::followsTheToolThatIsSetUp_data()
{
    QTest::addColumn<DesktopSession>("session");
    const QStringList own{QStringLiteral("My shots")};
    const auto files = [](const QString &path, const QByteArray &contents) {
        return DesktopSession::Files{{path, contents}};
    };
    const auto withFile = [&](const QByteArray &name, const DesktopSession::Files &contents) {
        return DesktopSession{.desktop = name, .files = contents, .folders = own, .expected = shots};
    };
    const auto withVariable = [&](const QByteArray &name, const QByteArray &variable) {
        return DesktopSession{
            .desktop = name,
            .environment = {{variable, "%HOME%/My shots"}},
            .folders = own,
            .expected = shots};
    };
    addRow("no tool", {.desktop = "sway", .expected = desktop});
    addRow("no desktop named", {.desktop = "", .expected = desktop});
    addRow("only separators", {.desktop = ":::", .expected = desktop});
    addRow("screenshots variable", withVariable("sway:wlroots", "XDG_SCREENSHOTS_DIR"));
    addRow("grim", withVariable("sway", "GRIM_DEFAULT_DIR"));
    addRow("hyprshot", withVariable("Hyprland", "HYPRSHOT_DIR"));
    addRow("Flameshot", withFile("i3", files(flameshot, "[General]\nsavePath=%HOME%/My shots\n")));
    addRow("ksnip", withFile("", files(ksnip, "[Application]\nSaveDirectory=%HOME%/My shots\n")));
    addRow(
        "Shutter", withFile(
                       "openbox", files(
                                      shutter, "<opt>\n  <general filename=\"a\" folder=\"%HOME%/My shots\" "
                                               "save_auto=\"1\" />\n</opt>\n")));
    addRow("screengrab", withFile("openbox", files(screengrab, "[Base]\ndefDir=%HOME%/My shots\n")));
    DesktopSession both = withVariable("sway", "XDG_SCREENSHOTS_DIR");
    both.environment.insert("GRIM_DEFAULT_DIR", "%HOME%/Downloads");
    both.files = files(flameshot, "[General]\nsavePath=%HOME%/Pictures\n");
    addRow("the first of several", both);
    DesktopSession second = withVariable("sway", "GRIM_DEFAULT_DIR");
    second.environment.insert("XDG_SCREENSHOTS_DIR", "%HOME%/missing");
    addRow("the first whose folder is there", second);
    addRow(
        "Flameshot without a setting",
        {.desktop = "i3", .files = files(flameshot, "[General]\nsavePath=\n"), .expected = desktop});
}

void CaptureToolsTest::followsTheToolThatIsSetUp()
{
    followsTheDesktopsOwnTool();
}

void CaptureToolsTest::takesTheDefaultWithoutTheToolsSchema()
{
    m_settings->hide();
    const TemporaryHome home;
    DesktopSession{.desktop = "Pantheon"}.start(home);
    QCOMPARE(desktopFolder(), QString(home.path() + screenshots));
    qputenv("XDG_CURRENT_DESKTOP", "MATE");
    QCOMPARE(desktopFolder(), home.desktop());
}

void CaptureToolsTest::callsTheFolderAsTheShellDoes_data()
{
    QTest::addColumn<QByteArray>("language");
    QTest::addColumn<QString>("name");
    QTest::newRow("English") << QByteArray("en_US") << QStringLiteral("Screenshots");
    QTest::newRow("German") << QByteArray("de") << QStringLiteral("Bildschirmfotos");
    QTest::newRow("French") << QByteArray("fr_FR") << QStringLiteral("Captures d\u2019écran");
    QTest::newRow("Russian") << QByteArray("ru") << QStringLiteral("Снимки экрана");
    QTest::newRow("several") << QByteArray("tlh:de:fr") << QStringLiteral("Bildschirmfotos");
    QTest::newRow("none that there is") << QByteArray("tlh") << QStringLiteral("Screenshots");
}

void CaptureToolsTest::callsTheFolderAsTheShellDoes()
{
    QFETCH(const QByteArray, language);
    QFETCH(const QString, name);
    const TemporaryHome home;
    DesktopSession{.desktop = "GNOME"}.start(home);
    setLanguage(language);
    QCOMPARE(desktopFolder(), QString(home.pictures() + u'/' + name));
}

void CaptureToolsTest::makesTheFolderIfTheToolWould_data()
{
    QTest::addColumn<DesktopSession>("session");
    const QByteArray missing = "%HOME%/missing/folder";
    const QString made = QStringLiteral("/missing/folder");
    const QString quotedFolder = QStringLiteral("'%HOME%/missing/folder'");
    const DesktopSession::Files noFolder{{userDirectories, "XDG_PICTURES_DIR=\"" + missing + "\"\n"}};

    addRow("GNOME", {.desktop = "GNOME", .files = noFolder, .expected = made + u"/Screenshots"});
    addRow(
        "KDE", {.desktop = "KDE",
                .files = {{spectacle, "[ImageSave]\nimageSaveLocation=file://" + missing + '\n'}},
                .expected = made});
    addRow(
        "elementary",
        {.desktop = "Pantheon", .settings = {elementaryScreenshot(quotedFolder)}, .expected = made});
    addRow("COSMIC", {.desktop = "COSMIC", .files = noFolder, .expected = made + u"/Screenshots"});
    addRow(
        "Deepin", {.desktop = "Deepin",
                   .files = {{deepin, "[shot]\nsave_op=3\nsave_dir=" + missing + '\n'}},
                   .expected = made});

    addRow(
        "not KDE before 24.02",
        {.desktop = "KDE",
         .files = {{spectacle, "[Save]\ndefaultSaveLocation=file://" + missing + '\n'}},
         .expected = desktop});
    addRow("not Xfce", {.desktop = "XFCE", .files = noFolder, .expected = desktop});
    addRow("not MATE", {.desktop = "MATE", .settings = {mateScreenshot(quotedFolder)}, .expected = desktop});
    addRow(
        "not Cinnamon",
        {.desktop = "X-Cinnamon", .settings = {gnomeScreenshot(quotedFolder)}, .expected = desktop});
    addRow(
        "not LXQt", {.desktop = "LXQt",
                     .files = {{screengrab, "[Base]\ndefDir=" + missing + '\n'}},
                     .expected = desktop});
    addRow(
        "not elsewhere",
        {.desktop = "sway", .environment = {{"XDG_SCREENSHOTS_DIR", missing}}, .expected = desktop});
}

void CaptureToolsTest::makesTheFolderIfTheToolWould()
{
    QFETCH(DesktopSession, session);
    const TemporaryHome home;
    for (QByteArray &contents : session.files) {
        contents.replace("%HOME%", home.path().toUtf8());
    }
    session.start(home);
    QVERIFY(!files::exists(home.path() + QStringLiteral("/missing")));
    // To name it makes nothing: the user may have just removed it.
    QCOMPARE(desktopFolder(), QString(home.path() + session.expected));
    QVERIFY(!files::exists(home.path() + QStringLiteral("/missing")));
    FileManager::defaultManager().makeDesktop();
    QCOMPARE(desktopFolder(), QString(home.path() + session.expected));
    QVERIFY(QFileInfo(desktopFolder()).isDir());
    QCOMPARE(files::exists(home.path() + QStringLiteral("/missing")), session.expected != desktop);
}

QTEST_GUILESS_MAIN(CaptureToolsTest)
#include "CaptureToolsTest.moc"
