#include "FileManager.h"

#include "TemporaryHome.h"
#include "files.h"

#include <QDir>
#include <QFileInfo>
#include <QProcess>
#include <QSemaphore>
#include <QTest>
#include <QThread>

#include <sys/stat.h>

#include <clocale>
#include <memory>
#include <vector>

namespace {

/// Settings as the tools' own programs would be told by their dialogs.
struct Setting {
    QString schema;
    QString key;
    QString value;
};

using Files = QMap<QString, QByteArray>;

/// A desktop with what its user has set. In contents and values `%HOME%` stands for the home folder.
struct Session {
    QByteArray desktop;
    Files files = {};
    QList<Setting> settings = {};
    QMap<QByteArray, QByteArray> environment = {};
    /// Relative to the home folder; the standard folders are there anyway.
    QStringList folders = {};
    /// Relative to the home folder; that itself if empty.
    QString expected = {};
};

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

Setting gnomeScreenshot(const QString &value)
{
    return {QStringLiteral("org.gnome.gnome-screenshot"), QStringLiteral("auto-save-directory"), value};
}

Setting mateScreenshot(const QString &value)
{
    return {QStringLiteral("org.mate.screenshot"), QStringLiteral("last-save-directory"), value};
}

Setting elementaryScreenshot(const QString &value)
{
    return {QStringLiteral("io.elementary.screenshot"), QStringLiteral("folder-dir"), value};
}

/// The schemas of programs that Debian 12 doesn't have, or that the tests don't install.
constexpr char otherSchemas[] = R"(<schemalist>
  <schema id="io.elementary.screenshot" path="/io/elementary/screenshot/">
    <key name="folder-dir" type="s"><default>''</default></key>
  </schema>
  <schema id="org.mate.caja.preferences" path="/org/mate/caja/preferences/">
    <key name="desktop-is-home-dir" type="b"><default>false</default></key>
  </schema>
</schemalist>
)";

void run(const QString &program, const QStringList &arguments)
{
    QProcess process;
    process.start(program, arguments);
    QVERIFY2(process.waitForFinished(), qPrintable(process.errorString()));
    QVERIFY2(process.exitCode() == 0, process.readAllStandardError().constData());
}

void set(const Setting &setting)
{
    run(QStringLiteral("gsettings"), {QStringLiteral("set"), setting.schema, setting.key, setting.value});
}

/// A text in GVariant's text format, which `gsettings` takes.
QString quoted(const QString &text)
{
    return u'\'' + text + u'\'';
}

void write(const QString &path, const QByteArray &contents)
{
    files::makeFolder(QFileInfo(path).path());
    files::write(path, contents);
}

void start(const Session &session, const TemporaryHome &home)
{
    const auto atHome = [&home](QByteArray text) { return text.replace("%HOME%", home.path().toUtf8()); };
    qputenv("XDG_CURRENT_DESKTOP", session.desktop);
    write(home.path() + u'/' + userDirectories, "XDG_PICTURES_DIR=\"$HOME/Pictures\"\n");
    for (const QString &folder : session.folders) {
        files::makeFolder(home.path() + u'/' + folder);
    }
    for (auto file = session.files.cbegin(); file != session.files.cend(); ++file) {
        write(home.path() + u'/' + file.key(), atHome(file.value()));
    }
    for (auto variable = session.environment.cbegin(); variable != session.environment.cend(); ++variable) {
        qputenv(variable.key().constData(), atHome(variable.value()));
    }
    for (Setting setting : session.settings) {
        setting.value.replace(QStringLiteral("%HOME%"), home.path());
        set(setting);
    }
}

/// The one folder with the role *Desktop*, or an empty path.
QString desktopFolder()
{
    const QList<QUrl> urls = FileManager::defaultManager().urls(SearchPathDirectory::Desktop);
    return urls.size() == 1 ? urls.constFirst().toLocalFile() : QString();
}

void addRow(const char *name, const Session &session)
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

Q_DECLARE_METATYPE(Session)

/// The role *Desktop*: where the session's capture tool saves.
class CaptureFolderTest final : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void cleanup();
    void followsTheDesktopsOwnTool_data();
    void followsTheDesktopsOwnTool();
    void followsTheToolThatIsSetUp_data();
    void followsTheToolThatIsSetUp();
    void passesOverSettingsThatLeadNowhere_data();
    void passesOverSettingsThatLeadNowhere();
    void passesOverWhatIsNoSettingsFile();
    void takesTheDefaultWithoutTheToolsSchema();
    void callsTheFolderAsTheShellDoes_data();
    void callsTheFolderAsTheShellDoes();
    void makesTheFolderIfTheToolWould_data();
    void makesTheFolderIfTheToolWould();
    void makesNothingWhereADiskIsMissing();
    void makesNothingInPlaceOfAFile();
    void letsOthersIntoTheFolderAsUsual();
    void followsASettingsFileThatChanges();
    void asksForASettingAgainOnlyWhenItMayHaveChanged();
    void answersSeveralThreads();
    void holdsTheDesktopFolderWhenSetToIt();
    void hasNoFolderWhereTheDesktopIsSwitchedOff();

private:
    QTemporaryDir m_schemas;
};

void CaptureFolderTest::initTestCase()
{
    qputenv("GSETTINGS_BACKEND", "keyfile");
    files::write(m_schemas.filePath(QStringLiteral("other.gschema.xml")), otherSchemas);
    run(QStringLiteral("glib-compile-schemas"), {m_schemas.path()});
}

void CaptureFolderTest::cleanup()
{
    qputenv("GSETTINGS_SCHEMA_DIR", m_schemas.path().toUtf8());
    qunsetenv("LC_ALL");
    setLanguage("");
}

void CaptureFolderTest::followsTheDesktopsOwnTool_data()
{
    QTest::addColumn<Session>("session");
    const QStringList own{QStringLiteral("My shots")};
    const Files noPictures{{userDirectories, "XDG_DOWNLOAD_DIR=\"$HOME/Downloads\"\n"}};

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

void CaptureFolderTest::followsTheDesktopsOwnTool()
{
    QFETCH(const Session, session);
    const TemporaryHome home;
    start(session, home);
    QCOMPARE(desktopFolder(), QString(home.path() + session.expected));
    QVERIFY(QFileInfo(desktopFolder()).isDir());
    QCOMPARE(FileManager::defaultManager().isDesktopElsewhere(), session.expected != desktop);
}

void CaptureFolderTest::followsTheToolThatIsSetUp_data()
{
    QTest::addColumn<Session>("session");
    const QStringList own{QStringLiteral("My shots")};
    const auto files = [](const QString &path, const QByteArray &contents) {
        return Files{{path, contents}};
    };
    const auto withFile = [&](const QByteArray &name, const Files &contents) {
        return Session{.desktop = name, .files = contents, .folders = own, .expected = shots};
    };
    const auto withVariable = [&](const QByteArray &name, const QByteArray &variable) {
        return Session{
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
    Session both = withVariable("sway", "XDG_SCREENSHOTS_DIR");
    both.environment.insert("GRIM_DEFAULT_DIR", "%HOME%/Downloads");
    both.files = files(flameshot, "[General]\nsavePath=%HOME%/Pictures\n");
    addRow("the first of several", both);
    Session second = withVariable("sway", "GRIM_DEFAULT_DIR");
    second.environment.insert("XDG_SCREENSHOTS_DIR", "%HOME%/missing");
    addRow("the first whose folder is there", second);
    addRow(
        "Flameshot without a setting",
        {.desktop = "i3", .files = files(flameshot, "[General]\nsavePath=\n"), .expected = desktop});
}

void CaptureFolderTest::followsTheToolThatIsSetUp()
{
    followsTheDesktopsOwnTool();
}

void CaptureFolderTest::passesOverSettingsThatLeadNowhere_data()
{
    QTest::addColumn<QByteArray>("value");
    QTest::newRow("relative") << QByteArray("Pictures");
    QTest::newRow("relative with dots") << QByteArray("../Pictures");
    QTest::newRow("relative URL") << QByteArray("file:Pictures");
    QTest::newRow("another machine's") << QByteArray("file://elsewhere%HOME%/Pictures");
    QTest::newRow("no file URL") << QByteArray("sftp://elsewhere/Pictures");
    QTest::newRow("another user's home") << QByteArray("~root/Pictures");
    QTest::newRow("null character") << QByteArray("file://%HOME%/Pictures%00x");
    QTest::newRow("a file") << QByteArray("%HOME%/file");
    QTest::newRow("below a file") << QByteArray("%HOME%/file/folder");
    QTest::newRow("too long") << QByteArray("/" + QByteArray(5000, 'a'));
    QTest::newRow("on a disk that isn't there") << QByteArray("/media/missing/disk/Pictures");
    QTest::newRow("a resource of the toolkit") << QByteArray(":/qt-project.org");
}

void CaptureFolderTest::passesOverSettingsThatLeadNowhere()
{
    QFETCH(const QByteArray, value);
    const Files settings{
        {QStringLiteral("file"), "contents"},
        {spectacle, "[ImageSave]\nimageSaveLocation=" + value + '\n'},
        {xfce, "screenshot_dir=" + value + '\n'},
        {screengrab, "[Base]\ndefDir=" + value + '\n'},
        {deepin, "[shot]\nsave_op=3\nsave_dir=" + value + '\n'},
        {flameshot, "[General]\nsavePath=" + value + '\n'}};
    for (const char *const name : {"KDE", "XFCE", "LXQt", "Deepin", "i3"}) {
        const TemporaryHome home;
        start({.desktop = name, .files = settings, .environment = {{"GRIM_DEFAULT_DIR", value}}}, home);
        QCOMPARE(desktopFolder(), home.desktop());
        QVERIFY(!FileManager::defaultManager().isDesktopElsewhere());
    }
}

void CaptureFolderTest::passesOverWhatIsNoSettingsFile()
{
    const TemporaryHome home;
    start({.desktop = "XFCE"}, home);
    const QString path = home.path() + u'/' + xfce;
    files::makeFolder(path);
    QCOMPARE(desktopFolder(), home.pictures());
    files::remove(path);

    QCOMPARE(::mkfifo(path.toUtf8().constData(), 0600), 0);
    QCOMPARE(desktopFolder(), home.pictures());
    files::remove(path);

    const QByteArray entry = "screenshot_dir=" + home.downloads().toUtf8() + '\n';
    files::write(path, entry + QByteArray(2 << 20, '#'));
    QCOMPARE(desktopFolder(), home.pictures());
    files::write(path, QByteArray("\0\xff\n[\n=\n", 7) + entry);
    QCOMPARE(desktopFolder(), home.pictures());
    files::write(path, QByteArray("\0\xff\n=\n", 5) + entry);
    QCOMPARE(desktopFolder(), home.downloads());

    qputenv("XDG_CURRENT_DESKTOP", "openbox");
    write(home.path() + u'/' + shutter, "<opt><general filename=\"a\"");
    QCOMPARE(desktopFolder(), home.desktop());
}

void CaptureFolderTest::takesTheDefaultWithoutTheToolsSchema()
{
    qunsetenv("GSETTINGS_SCHEMA_DIR");
    const TemporaryHome home;
    start({.desktop = "Pantheon"}, home);
    QCOMPARE(desktopFolder(), QString(home.path() + screenshots));
    qputenv("XDG_CURRENT_DESKTOP", "MATE");
    QCOMPARE(desktopFolder(), home.desktop());
}

void CaptureFolderTest::callsTheFolderAsTheShellDoes_data()
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

void CaptureFolderTest::callsTheFolderAsTheShellDoes()
{
    QFETCH(const QByteArray, language);
    QFETCH(const QString, name);
    const TemporaryHome home;
    start({.desktop = "GNOME"}, home);
    // The one locale that every machine has in which gettext looks at LANGUAGE.
    qputenv("LC_ALL", "C.UTF-8");
    setLanguage(language);
    QCOMPARE(desktopFolder(), QString(home.pictures() + u'/' + name));
    QVERIFY(QFileInfo(desktopFolder()).isDir());
}

void CaptureFolderTest::makesTheFolderIfTheToolWould_data()
{
    QTest::addColumn<Session>("session");
    const QByteArray missing = "%HOME%/missing/folder";
    const QString made = QStringLiteral("/missing/folder");
    const QString quotedFolder = QStringLiteral("'%HOME%/missing/folder'");
    const Files noFolder{{userDirectories, "XDG_PICTURES_DIR=\"" + missing + "\"\n"}};

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

void CaptureFolderTest::makesTheFolderIfTheToolWould()
{
    QFETCH(Session, session);
    const TemporaryHome home;
    for (QByteArray &contents : session.files) {
        contents.replace("%HOME%", home.path().toUtf8());
    }
    start(session, home);
    QVERIFY(!files::exists(home.path() + QStringLiteral("/missing")));
    QCOMPARE(desktopFolder(), QString(home.path() + session.expected));
    QVERIFY(QFileInfo(desktopFolder()).isDir());
    QCOMPARE(files::exists(home.path() + QStringLiteral("/missing")), session.expected != desktop);
}

void CaptureFolderTest::makesNothingWhereADiskIsMissing()
{
    const TemporaryHome home;
    const QTemporaryDir disk(home.path() + QStringLiteral("/../disk-XXXXXX"));
    const QString onDisk = QDir::cleanPath(disk.path());
    const auto choose = [&home](const QString &folder) {
        write(
            home.path() + u'/' + spectacle,
            "[ImageSave]\nimageSaveLocation=file://" + folder.toUtf8() + '\n');
    };
    start({.desktop = "KDE"}, home);
    choose(onDisk + QStringLiteral("/one/two"));
    QCOMPARE(desktopFolder(), home.desktop());
    QVERIFY(!files::exists(onDisk + QStringLiteral("/one")));
    choose(onDisk + QStringLiteral("/one"));
    QCOMPARE(desktopFolder(), QString(onDisk + QStringLiteral("/one")));

    const QString newHome = home.path() + QStringLiteral("/later");
    qputenv("HOME", newHome.toUtf8());
    choose(newHome + QStringLiteral("/Screenshots"));
    QCOMPARE(desktopFolder(), QString(newHome + QStringLiteral("/Desktop")));
    QVERIFY(!files::exists(newHome));
}

void CaptureFolderTest::makesNothingInPlaceOfAFile()
{
    const TemporaryHome home;
    start({.desktop = "GNOME"}, home);
    files::write(home.path() + screenshots);
    QCOMPARE(desktopFolder(), home.desktop());
    QVERIFY(QFileInfo(home.path() + screenshots).isFile());
}

void CaptureFolderTest::letsOthersIntoTheFolderAsUsual()
{
    const TemporaryHome home;
    start({.desktop = "GNOME"}, home);
    const mode_t mask = ::umask(027);
    const QString folder = desktopFolder();
    ::umask(mask);
    struct stat status = {};
    QCOMPARE(::stat(folder.toUtf8().constData(), &status), 0);
    QCOMPARE(status.st_mode & 0777U, mode_t(0750));
}

void CaptureFolderTest::followsASettingsFileThatChanges()
{
    const TemporaryHome home;
    start({.desktop = "XFCE"}, home);
    const QString path = home.path() + u'/' + xfce;
    for (const QString &folder : {home.downloads(), home.desktop(), home.pictures()}) {
        write(path, "screenshot_dir=" + QUrl::fromLocalFile(folder).toEncoded() + '\n');
        QCOMPARE(desktopFolder(), folder);
        QCOMPARE(FileManager::defaultManager().isDesktopElsewhere(), folder != home.desktop());
    }
    files::remove(path);
    QCOMPARE(desktopFolder(), home.pictures());
}

void CaptureFolderTest::asksForASettingAgainOnlyWhenItMayHaveChanged()
{
    const TemporaryHome home;
    start({.desktop = "X-Cinnamon"}, home);
    // A `gsettings` that keeps count and leaves the rest to the real one.
    const QString counts = home.path() + QStringLiteral("/counts");
    const QString tool = home.path() + QStringLiteral("/bin/gsettings");
    const QByteArray path = qgetenv("PATH");
    write(
        tool,
        "#!/bin/sh\necho \"$1\" >> '" + counts.toUtf8() + "'\nPATH='" + path + "' exec gsettings \"$@\"\n");
    QVERIFY(QFile::setPermissions(tool, QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner));
    const auto questions = [&counts] {
        QFile file(counts);
        return file.open(QIODevice::ReadOnly) ? file.readAll().count("get") : 0;
    };
    qputenv("PATH", QFileInfo(tool).path().toUtf8() + ':' + path);
    for (int i = 0; i < 5; ++i) {
        QCOMPARE(desktopFolder(), home.pictures());
    }
    QCOMPARE(questions(), 1);
    qsizetype expected = 1;
    for (const QString &folder : {home.downloads(), home.desktop()}) {
        set(gnomeScreenshot(quoted(folder)));
        QCOMPARE(desktopFolder(), folder);
        QCOMPARE(desktopFolder(), folder);
        QCOMPARE(questions(), ++expected);
    }
    qputenv("PATH", path);
}

void CaptureFolderTest::answersSeveralThreads()
{
    const TemporaryHome home;
    start({.desktop = "MATE", .settings = {mateScreenshot(quoted(home.downloads()))}}, home);
    constexpr int count = 4;
    QSemaphore isReady;
    std::array<QStringList, count> answers;
    std::vector<std::unique_ptr<QThread>> threads;
    for (QStringList &own : answers) {
        threads.emplace_back(QThread::create([&isReady, &own] {
            isReady.acquire();
            for (int i = 0; i < 50; ++i) {
                own.append(desktopFolder());
            }
        }));
        threads.back()->start();
    }
    isReady.release(count);
    for (const auto &thread : threads) {
        QVERIFY(thread->wait());
    }
    for (const QStringList &own : answers) {
        QCOMPARE(own.count(home.downloads()), 50);
    }
}

void CaptureFolderTest::holdsTheDesktopFolderWhenSetToIt()
{
    const TemporaryHome home;
    start(
        {.desktop = "XFCE", .files = {{xfce, "screenshot_dir=file://%HOME%/Pictures/..//Desktop/\n"}}}, home);
    QCOMPARE(desktopFolder(), home.desktop());
    QVERIFY(!FileManager::defaultManager().isDesktopElsewhere());
}

void CaptureFolderTest::hasNoFolderWhereTheDesktopIsSwitchedOff()
{
    const TemporaryHome home;
    start({.desktop = "sway", .files = {{userDirectories, "XDG_DESKTOP_DIR=\"$HOME/\"\n"}}}, home);
    QVERIFY(FileManager::defaultManager().urls(SearchPathDirectory::Desktop).isEmpty());
    QVERIFY(!FileManager::defaultManager().isDesktopElsewhere());
    // A tool that saves in the home folder does so all the same.
    qputenv("XDG_CURRENT_DESKTOP", "LXQt");
    QCOMPARE(desktopFolder(), home.path());
}

QTEST_GUILESS_MAIN(CaptureFolderTest)
#include "CaptureFolderTest.moc"
