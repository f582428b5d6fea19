#include "FileManager.h"

#include "DesktopSession.h"
#include "TemporaryHome.h"
#include "files.h"

#include <QDir>
#include <QFileInfo>
#include <QTest>

#include <sys/stat.h>

namespace {

const QString userDirectories = QStringLiteral(".config/user-dirs.dirs");
const QString spectacle = QStringLiteral(".config/spectaclerc");
const QString xfce = QStringLiteral(".config/xfce4/xfce4-screenshooter");
const QString screengrab = QStringLiteral(".config/screengrab/screengrab.conf");
const QString deepin = QStringLiteral(".config/deepin/deepin-screen-recorder/deepin-screen-recorder.conf");
const QString flameshot = QStringLiteral(".config/flameshot/flameshot.ini");
const QString shutter = QStringLiteral(".shutter/settings.xml");

const QString screenshots = QStringLiteral("/Pictures/Screenshots");

void write(const QString &path, const QByteArray &contents)
{
    files::makeFolder(QFileInfo(path).path());
    files::write(path, contents);
}

/// The one folder with the role *Desktop*, or an empty path.
QString desktopFolder()
{
    const QList<QUrl> urls = FileManager::defaultManager().urls(SearchPathDirectory::Desktop);
    return urls.size() == 1 ? urls.constFirst().toLocalFile() : QString();
}

} // namespace

/// The role *Desktop* on good and bad days.
class CaptureFolderTest final : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void passesOverSettingsThatLeadNowhere_data();
    void passesOverSettingsThatLeadNowhere();
    void passesOverWhatIsNoSettingsFile();
    void makesNothingWhereADiskIsMissing();
    void makesNothingInPlaceOfAFile();
    void letsOthersIntoTheFolderAsUsual();
    void followsASettingsFileThatChanges();
    void holdsTheDesktopFolderWhenSetToIt();
    void hasNoFolderWhereTheDesktopIsSwitchedOff();
};

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
    const DesktopSession::Files settings{
        {QStringLiteral("file"), "contents"},
        {spectacle, "[ImageSave]\nimageSaveLocation=" + value + '\n'},
        {xfce, "screenshot_dir=" + value + '\n'},
        {screengrab, "[Base]\ndefDir=" + value + '\n'},
        {deepin, "[shot]\nsave_op=3\nsave_dir=" + value + '\n'},
        {flameshot, "[General]\nsavePath=" + value + '\n'}};
    for (const char *const name : {"KDE", "XFCE", "LXQt", "Deepin", "i3"}) {
        const TemporaryHome home;
        DesktopSession{.desktop = name, .files = settings, .environment = {{"GRIM_DEFAULT_DIR", value}}}
            .start(home);
        QCOMPARE(desktopFolder(), home.desktop());
        QVERIFY(!FileManager::defaultManager().isDesktopElsewhere());
    }
}

void CaptureFolderTest::passesOverWhatIsNoSettingsFile()
{
    const TemporaryHome home;
    DesktopSession{.desktop = "XFCE"}.start(home);
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
    DesktopSession{.desktop = "KDE"}.start(home);
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
    DesktopSession{.desktop = "GNOME"}.start(home);
    files::write(home.path() + screenshots);
    QCOMPARE(desktopFolder(), home.desktop());
    QVERIFY(QFileInfo(home.path() + screenshots).isFile());
}

void CaptureFolderTest::letsOthersIntoTheFolderAsUsual()
{
    const TemporaryHome home;
    DesktopSession{.desktop = "GNOME"}.start(home);
    const mode_t mask = ::umask(027);
    FileManager::defaultManager().makeDesktop();
    ::umask(mask);
    const QString folder = desktopFolder();
    struct stat status = {};
    QCOMPARE(::stat(folder.toUtf8().constData(), &status), 0);
    QCOMPARE(status.st_mode & 0777U, mode_t(0750));
}

void CaptureFolderTest::followsASettingsFileThatChanges()
{
    const TemporaryHome home;
    DesktopSession{.desktop = "XFCE"}.start(home);
    const QString path = home.path() + u'/' + xfce;
    for (const QString &folder : {home.downloads(), home.desktop(), home.pictures()}) {
        write(path, "screenshot_dir=" + QUrl::fromLocalFile(folder).toEncoded() + '\n');
        QCOMPARE(desktopFolder(), folder);
        QCOMPARE(FileManager::defaultManager().isDesktopElsewhere(), folder != home.desktop());
    }
    files::remove(path);
    QCOMPARE(desktopFolder(), home.pictures());
}

void CaptureFolderTest::holdsTheDesktopFolderWhenSetToIt()
{
    const TemporaryHome home;
    DesktopSession{
        .desktop = "XFCE", .files = {{xfce, "screenshot_dir=file://%HOME%/Pictures/..//Desktop/\n"}}}
        .start(home);
    QCOMPARE(desktopFolder(), home.desktop());
    QVERIFY(!FileManager::defaultManager().isDesktopElsewhere());
}

void CaptureFolderTest::hasNoFolderWhereTheDesktopIsSwitchedOff()
{
    const TemporaryHome home;
    DesktopSession{.desktop = "sway", .files = {{userDirectories, "XDG_DESKTOP_DIR=\"$HOME/\"\n"}}}.start(
        home);
    QVERIFY(FileManager::defaultManager().urls(SearchPathDirectory::Desktop).isEmpty());
    QVERIFY(!FileManager::defaultManager().isDesktopElsewhere());
    // A tool that saves in the home folder does so all the same.
    qputenv("XDG_CURRENT_DESKTOP", "LXQt");
    QCOMPARE(desktopFolder(), home.path());
}

QTEST_GUILESS_MAIN(CaptureFolderTest)
#include "CaptureFolderTest.moc"
