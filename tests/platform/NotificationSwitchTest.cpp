#include "NotificationSwitch.h"

#include "TemporaryHome.h"
#include "files.h"

#include <QDir>
#include <QProcess>
#include <QTest>

#include <memory>

class NotificationSwitchTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void init();
    void followsTheFilesOfTheDesktop_data();
    void followsTheFilesOfTheDesktop();
    void asksNoOtherDesktop();
    void theUsersPlasmaFileComesBeforeTheSystems();
    void followsGnome();
    void cinnamonHasOneSwitchForAll();
    void cinnamonHasOneForEachProgram();

private:
    void write(const QString &relativePath, const QByteArray &contents) const;
    void setByGio(const QByteArray &keyfile) const;
    void installSchemas(const QByteArray &schemas) const;

    std::unique_ptr<TemporaryHome> m_home;
};

namespace {

const QString plasmaFile = QStringLiteral("plasmanotifyrc");
const QString xfceFile = QStringLiteral("xfce4/xfconf/xfce-perchannel-xml/xfce4-notifyd.xml");
const QString lxqtFile = QStringLiteral("lxqt/notifications.conf");

QByteArray plasmaSettings(const QByteArray &lines)
{
    return "[Applications][firefox]\nShowInHistory=false\nShowPopups=false\nSeen=true\n\n"
           "[Applications][org.deskbroom.Deskbroom]\nSeen=true\n" +
           lines + "\n[DoNotDisturb]\nWhenScreensMirrored=false\n";
}

QByteArray xfceSettings(const QByteArray &mutedApplication)
{
    return R"(<?xml version="1.0" encoding="UTF-8"?>

<channel name="xfce4-notifyd" version="1.0">
  <property name="theme" type="string" value="Default"/>
  <property name="applications" type="empty">
    <property name="known_applications" type="array">
      <value type="string" value="org.deskbroom.Deskbroom"/>
    </property>
    <property name="muted_applications" type="array">
      <value type="string" value="firefox"/>
      <value type="string" value=")" +
           mutedApplication + R"("/>
    </property>
  </property>
  <property name="do-not-disturb" type="bool" value="true"/>
</channel>
)";
}

constexpr auto cinnamonSchemas = R"(<schemalist>
  <schema id="org.cinnamon.desktop.notifications" path="/org/cinnamon/desktop/notifications/">
    <key name="display-notifications" type="b"><default>true</default></key>
  </schema>
  <schema id="org.cinnamon.desktop.notifications.application">
    <key name="enabled" type="b"><default>true</default></key>
  </schema>
</schemalist>
)";

} // namespace

void NotificationSwitchTest::init()
{
    m_home = std::make_unique<TemporaryHome>();
    qputenv("GSETTINGS_BACKEND", "keyfile");
    qputenv("XDG_CONFIG_DIRS", (m_home->path() + QStringLiteral("/etc/xdg")).toUtf8());
    qunsetenv("GSETTINGS_SCHEMA_DIR");
}

void NotificationSwitchTest::write(const QString &relativePath, const QByteArray &contents) const
{
    const QString path = m_home->path() + QStringLiteral("/.config/") + relativePath;
    files::makeFolder(path.section(u'/', 0, -2));
    files::write(path, contents);
}

void NotificationSwitchTest::setByGio(const QByteArray &keyfile) const
{
    write(QStringLiteral("glib-2.0/settings/keyfile"), keyfile);
}

void NotificationSwitchTest::installSchemas(const QByteArray &schemas) const
{
    const QString folder = m_home->path() + QStringLiteral("/schemas");
    files::makeFolder(folder);
    files::write(folder + QStringLiteral("/test.gschema.xml"), schemas);
    QCOMPARE(QProcess::execute(QStringLiteral("glib-compile-schemas"), {folder}), 0);
    qputenv("GSETTINGS_SCHEMA_DIR", folder.toUtf8());
}

void NotificationSwitchTest::followsTheFilesOfTheDesktop_data()
{
    QTest::addColumn<QByteArray>("desktop");
    QTest::addColumn<QString>("file");
    QTest::addColumn<QByteArray>("contents");
    QTest::addColumn<NotificationSwitch>("expected");
    const auto row = [](const char *name, const QByteArray &desktop, const QString &file,
                        const QByteArray &contents, NotificationSwitch expected) {
        QTest::newRow(name) << desktop << file << contents << expected;
    };
    using enum NotificationSwitch;

    row("Plasma: nothing set", "KDE", plasmaFile, plasmaSettings(""), On);
    row("Plasma: no popups, no history", "KDE", plasmaFile,
        plasmaSettings("ShowInHistory=false\nShowPopups=false\n"), Off);
    row("Plasma: history alone", "KDE", plasmaFile, plasmaSettings("ShowPopups=false\n"), On);
    row("Plasma: popups alone", "KDE", plasmaFile, plasmaSettings("ShowInHistory=false\n"), On);
    row("Plasma: both on", "KDE", plasmaFile, plasmaSettings("ShowInHistory=true\nShowPopups=yes\n"), On);
    row("Plasma: damaged", "KDE", plasmaFile, "[Applications][org.desk", On);

    row("Xfce: another program", "XFCE", xfceFile, xfceSettings("thunderbird"), On);
    row("Xfce: muted", "XFCE", xfceFile, xfceSettings("org.deskbroom.Deskbroom"), Off);
    row("Xfce: damaged", "XFCE", xfceFile, xfceSettings("org.deskbroom.Deskbroom").left(300), On);
    row("Xfce: not XML", "XFCE", xfceFile, "\xFF\0<<", On);

    row("LXQt: no list", "LXQt", lxqtFile, "[General]\ndoNotDisturb=true\n", On);
    row("LXQt: empty list", "LXQt", lxqtFile, "[General]\nblackList=\n", On);
    row("LXQt: another program", "LXQt", lxqtFile, "[General]\nblackList=firefox, Deskbroomstick\n", On);
    row("LXQt: alone", "LXQt", lxqtFile, "[General]\nblackList=Deskbroom\n", Off);
    row("LXQt: among others", "LXQt", lxqtFile, "[General]\nblackList=firefox, \"Deskbroom\", a\n", Off);

    row("second name of the desktop", "something:KDE", plasmaFile,
        plasmaSettings("ShowInHistory=false\nShowPopups=false\n"), Off);
}

void NotificationSwitchTest::followsTheFilesOfTheDesktop()
{
    QFETCH(const QByteArray, desktop);
    QFETCH(const QString, file);
    QFETCH(const QByteArray, contents);
    QFETCH(const NotificationSwitch, expected);
    qputenv("XDG_CURRENT_DESKTOP", desktop);
    QCOMPARE(readNotificationSwitch(), NotificationSwitch::On);

    write(file, contents);

    QCOMPARE(readNotificationSwitch(), expected);
}

void NotificationSwitchTest::asksNoOtherDesktop()
{
    write(plasmaFile, plasmaSettings("ShowInHistory=false\nShowPopups=false\n"));
    write(xfceFile, xfceSettings("org.deskbroom.Deskbroom"));

    for (const char *desktop : {"MATE", "sway", "GNOME", ""}) {
        qputenv("XDG_CURRENT_DESKTOP", desktop);
        QCOMPARE(readNotificationSwitch(), NotificationSwitch::On);
    }
    qunsetenv("XDG_CURRENT_DESKTOP");
    QCOMPARE(readNotificationSwitch(), NotificationSwitch::On);
}

void NotificationSwitchTest::theUsersPlasmaFileComesBeforeTheSystems()
{
    qputenv("XDG_CURRENT_DESKTOP", "KDE");
    const QString system = QStringLiteral("../etc/xdg/plasmanotifyrc");
    write(system, plasmaSettings("ShowInHistory=false\nShowPopups=false\n"));
    QCOMPARE(readNotificationSwitch(), NotificationSwitch::Off);

    write(plasmaFile, plasmaSettings("ShowPopups=true\n"));
    QCOMPARE(readNotificationSwitch(), NotificationSwitch::On);
}

void NotificationSwitchTest::followsGnome()
{
    qputenv("XDG_CURRENT_DESKTOP", "ubuntu:GNOME");
    const QByteArray group = "[org/gnome/desktop/notifications/application/org-deskbroom-deskbroom]\n";
    QCOMPARE(readNotificationSwitch(), NotificationSwitch::On);

    setByGio(group + "show-banners=false\n");
    QCOMPARE(readNotificationSwitch(), NotificationSwitch::On);
    setByGio(group + "enable=false\n");
    QCOMPARE(readNotificationSwitch(), NotificationSwitch::Off);
    setByGio(group + "enable=true\n");
    QCOMPARE(readNotificationSwitch(), NotificationSwitch::On);
}

void NotificationSwitchTest::cinnamonHasOneSwitchForAll()
{
    qputenv("XDG_CURRENT_DESKTOP", "X-Cinnamon");
    QCOMPARE(readNotificationSwitch(), NotificationSwitch::On);
    installSchemas(cinnamonSchemas);
    QCOMPARE(readNotificationSwitch(), NotificationSwitch::On);

    setByGio("[org/cinnamon/desktop/notifications]\ndisplay-notifications=false\n");
    QCOMPARE(readNotificationSwitch(), NotificationSwitch::Off);
}

void NotificationSwitchTest::cinnamonHasOneForEachProgram()
{
    qputenv("XDG_CURRENT_DESKTOP", "X-Cinnamon");
    installSchemas(cinnamonSchemas);
    setByGio("[org/cinnamon/desktop/notifications/application/firefox]\nenabled=false\n");
    QCOMPARE(readNotificationSwitch(), NotificationSwitch::On);

    setByGio("[org/cinnamon/desktop/notifications/application/org-deskbroom-deskbroom]\nenabled=false\n");
    QCOMPARE(readNotificationSwitch(), NotificationSwitch::Off);
}

QTEST_GUILESS_MAIN(NotificationSwitchTest)

#include "NotificationSwitchTest.moc"
