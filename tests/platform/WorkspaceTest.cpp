#include "Workspace.h"

#include "CapturedOutput.h"
#include "PrivateBus.h"
#include "RecordingFileManager.h"
#include "RecordingPrograms.h"
#include "TemporaryHome.h"
#include "files.h"

#include <QCoreApplication>
#include <QDBusConnection>
#include <QDBusError>
#include <QDBusMessage>
#include <QDBusObjectPath>
#include <QDBusUnixFileDescriptor>
#include <QDBusVirtualObject>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QTest>

namespace {

const QUrl
    privacy(QStringLiteral("x-apple.systempreferences:com.apple.preference.security?Privacy_AllFiles"));
const QUrl notifications(QStringLiteral("x-apple.systempreferences:com.apple.preference.notifications"));
const QUrl unknownPane(QStringLiteral("x-apple.systempreferences:com.apple.preference.displays"));

/// Names as any file may have them.
QList<QUrl> hostileFiles()
{
    return {
        QUrl::fromLocalFile(QStringLiteral("/srv/shots/-a %\n#\"$(b).png")),
        QUrl::fromLocalFile(QStringLiteral("/srv/shots/\u202Egnp.b.png")),
        QUrl::fromLocalFile(QStringLiteral("/srv/more/c\\?d.png")),
    };
}

const QString settingsFailure = QStringLiteral("Failed to open System Settings: ");

} // namespace

/// A portal on a connection of its own that records what it is asked to open, and takes it or not.
class OpenUriPortal final : public QDBusVirtualObject {
    Q_OBJECT

public:
    enum class Manner { Accepts, Refuses };

    explicit OpenUriPortal(Manner manner)
        : m_bus(QDBusConnection::connectToBus(QDBusConnection::SessionBus, QStringLiteral("portal"))),
          m_manner(manner)
    {
        m_bus.registerVirtualObject(QStringLiteral("/org/freedesktop/portal/desktop"), this);
        m_bus.registerService(QStringLiteral("org.freedesktop.portal.Desktop"));
    }

    ~OpenUriPortal() override { QDBusConnection::disconnectFromBus(QStringLiteral("portal")); }

    Q_DISABLE_COPY_MOVE(OpenUriPortal)

    /// The method and what it was to open.
    [[nodiscard]] QStringList opened() const { return m_opened; }

    [[nodiscard]] QString introspect(const QString & /*path*/) const override { return {}; }

    bool handleMessage(const QDBusMessage &message, const QDBusConnection & /*connection*/) override
    {
        const QVariant what = message.arguments().value(1);
        if (what.canConvert<QDBusUnixFileDescriptor>()) {
            const int descriptor = what.value<QDBusUnixFileDescriptor>().fileDescriptor();
            const QFileInfo link(QStringLiteral("/proc/self/fd/%1").arg(descriptor));
            m_opened.append(message.member() + u' ' + link.symLinkTarget());
        } else {
            m_opened.append(message.member() + u' ' + what.toString());
        }
        m_bus.send(
            m_manner == Manner::Accepts
                ? message.createReply(QVariant::fromValue(QDBusObjectPath(QStringLiteral("/request"))))
                : message.createErrorReply(QDBusError::AccessDenied, QStringLiteral("Not allowed")));
        return true;
    }

private:
    QDBusConnection m_bus;
    Manner m_manner;
    QStringList m_opened;
};

class WorkspaceTest : public QObject {
    Q_OBJECT

private:
    [[nodiscard]] QByteArray started() const { return m_programs->started(); }

    void install(const QString &name, const QByteArray &pages = QByteArrayLiteral("exit 1")) const
    {
        m_programs->install(name, pages);
    }

    TemporaryHome m_home;
    std::unique_ptr<RecordingPrograms> m_programs;

private Q_SLOTS:

    void init()
    {
        m_programs.reset();
        m_programs = std::make_unique<RecordingPrograms>(m_home.path());
        qunsetenv("XDG_CURRENT_DESKTOP");
        qunsetenv("FLATPAK_ID");
        Workspace::shared().setOwnSettings(nullptr);
    }

    void thePaneOfTheRunningDesktopOpens_data()
    {
        QTest::addColumn<QByteArray>("desktop");
        QTest::addColumn<QUrl>("url");
        QTest::addColumn<QString>("program");
        QTest::addColumn<QByteArray>("expected");
        const auto row = [](const char *name, const QByteArray &desktop, const QUrl &url,
                            const QString &program, const QByteArray &arguments) {
            QTest::newRow(name) << desktop << url << program
                                << QByteArray(program.toUtf8() + '|' + arguments + '\n');
        };
        const QString plasma = QStringLiteral("systemsettings");
        row("Plasma, notifications", "KDE", notifications, plasma,
            "kcm_notifications|--args|--desktop-entry org.deskbroom.Deskbroom|");
        row("Plasma, privacy", "KDE", privacy, plasma, "kcm_recentFiles|");
        row("Plasma, else", "KDE", unknownPane, plasma, "");
        const QString gnome = QStringLiteral("gnome-control-center");
        row("GNOME, notifications", "ubuntu:GNOME", notifications, gnome, "notifications|");
        row("GNOME, else", "GNOME-Classic:GNOME", unknownPane, gnome, "");
        const QString xfce = QStringLiteral("xfce4-settings-manager");
        row("XFCE, notifications", "XFCE", notifications, QStringLiteral("xfce4-notifyd-config"), "");
        row("XFCE, privacy", "XFCE", privacy, xfce, "");
        row("XFCE, else", "XFCE", unknownPane, xfce, "");
        const QString cinnamon = QStringLiteral("cinnamon-settings");
        row("Cinnamon, notifications", "X-Cinnamon", notifications, cinnamon, "notifications|");
        row("Cinnamon, privacy", "X-Cinnamon", privacy, cinnamon, "privacy|");
        row("Cinnamon, else", "X-Cinnamon", unknownPane, cinnamon, "");
        const QString mate = QStringLiteral("mate-control-center");
        row("MATE, notifications", "MATE", notifications, QStringLiteral("mate-notification-properties"), "");
        row("MATE, privacy", "MATE", privacy, mate, "");
        row("MATE, else", "MATE", unknownPane, mate, "");
        const QString lxqt = QStringLiteral("lxqt-config");
        row("LXQt, notifications", "LXQt", notifications, QStringLiteral("lxqt-config-notificationd"), "");
        row("LXQt, privacy", "LXQt", privacy, lxqt, "");
        row("LXQt, else", "LXQt", unknownPane, lxqt, "");
    }

    void thePaneOfTheRunningDesktopOpens()
    {
        QFETCH(const QByteArray, desktop);
        QFETCH(const QUrl, url);
        QFETCH(const QString, program);
        qputenv("XDG_CURRENT_DESKTOP", desktop);
        install(program);
        const CapturedOutput output;
        QVERIFY(Workspace::shared().open(url));
        QTRY_VERIFY(!started().isEmpty());
        QTEST(started(), "expected");
        QVERIFY(output.lines().isEmpty());
    }

    void theAnchorMayBeAFragment()
    {
        qputenv("XDG_CURRENT_DESKTOP", "KDE");
        install(QStringLiteral("systemsettings"));
        QUrl url = unknownPane;
        url.setPath(QStringLiteral("com.apple.preference.security"));
        QVERIFY(Workspace::shared().open(url));
        QTRY_COMPARE(started(), QByteArray("systemsettings|\n"));
        url.setFragment(QStringLiteral("Privacy_AllFiles"));
        QVERIFY(Workspace::shared().open(url));
        QTRY_COMPARE(started(), QByteArray("systemsettings|kcm_recentFiles|\n"));
    }

    void gnomesPageForThisProgramComesFirst()
    {
        qputenv("XDG_CURRENT_DESKTOP", "GNOME");
        install(QStringLiteral("gnome-control-center"));
        const QString entry =
            m_home.path() + QStringLiteral("/.local/share/applications/org.deskbroom.Deskbroom.desktop");
        files::makeFolder(QFileInfo(entry).path());
        files::write(entry);
        QVERIFY(Workspace::shared().open(notifications));
        files::remove(entry);
        QTRY_COMPARE(started(), QByteArray("gnome-control-center|applications|org.deskbroom.Deskbroom|\n"));
    }

    void gnomesPrivacyPageIsTheOneThatIsThere_data()
    {
        QTest::addColumn<QByteArray>("pages");
        QTest::addColumn<QByteArray>("expected");
        QTest::newRow("43") << QByteArray(R"(printf 'Available panels:\n\tcamera\n\tusage\n')")
                            << QByteArray("gnome-control-center|usage|\n");
        QTest::newRow("45") << QByteArray(R"(printf 'Available panels:\n\tusage\n\tprivacy\n')")
                            << QByteArray("gnome-control-center|privacy|\n");
        QTest::newRow("neither") << QByteArray(R"(printf 'Available panels:\n\tprivacy-x\n')")
                                 << QByteArray("gnome-control-center|\n");
        QTest::newRow("fails") << QByteArray("exit 3") << QByteArray("gnome-control-center|\n");
        QTest::newRow("crashes") << QByteArray("kill -SEGV $$") << QByteArray("gnome-control-center|\n");
        QTest::newRow("never answers")
            << QByteArray("exec /usr/bin/tail -f /dev/null") << QByteArray("gnome-control-center|\n");
    }

    void gnomesPrivacyPageIsTheOneThatIsThere()
    {
        QFETCH(const QByteArray, pages);
        qputenv("XDG_CURRENT_DESKTOP", "GNOME");
        install(QStringLiteral("gnome-control-center"), pages);
        const CapturedOutput output;
        QVERIFY(Workspace::shared().open(privacy));
        QVERIFY2(started().isEmpty(), "the answer isn't waited for");
        QTRY_VERIFY_WITH_TIMEOUT(!started().isEmpty(), 10000);
        QTEST(started(), "expected");
        QVERIFY(output.lines().isEmpty());
    }

    void inAFlatpakPlasmasPermissionsAreThePrivacyPage()
    {
        qputenv("XDG_CURRENT_DESKTOP", "KDE");
        qputenv("FLATPAK_ID", "org.deskbroom.Deskbroom");
        install(
            QStringLiteral("systemsettings"),
            "echo 'kcm_about-distro - About this System'\necho 'kcm_flatpak   - Manage Permissions'");
        QVERIFY(Workspace::shared().open(privacy));
        QTRY_COMPARE(started(), QByteArray("systemsettings|kcm_flatpak|\n"));
    }

    void withoutTheDesktopsProgramTheOwnSettingsShow_data()
    {
        QTest::addColumn<QByteArray>("desktop");
        QTest::addColumn<QString>("why");
        QTest::newRow("none") << QByteArray() << QStringLiteral("no desktop is running");
        QTest::newRow("unknown") << QByteArray("sway:wlroots")
                                 << QStringLiteral("the desktop isn't known: sway:wlroots");
        QTest::newRow("not installed")
            << QByteArray("XFCE") << QStringLiteral("xfce4-notifyd-config isn't installed");
    }

    void withoutTheDesktopsProgramTheOwnSettingsShow()
    {
        QFETCH(const QByteArray, desktop);
        QFETCH(const QString, why);
        qputenv("XDG_CURRENT_DESKTOP", desktop);
        const CapturedOutput output;
        QVERIFY(!Workspace::shared().open(notifications));
        QCOMPARE(output.lines(), QStringList(settingsFailure + why));

        int shown = 0;
        Workspace::shared().setOwnSettings([&shown] { ++shown; });
        QVERIFY(Workspace::shared().open(notifications));
        QCOMPARE(shown, 1);
        QCOMPARE(output.lines().size(), 1);
        Workspace::shared().setOwnSettings(nullptr);
    }

    void aSettingsProgramThatCantStartPrintsOneLine()
    {
        qputenv("XDG_CURRENT_DESKTOP", "GNOME");
        const QString program = m_programs->folder() + QStringLiteral("/gnome-control-center");
        files::write(program, "#!/no/such/interpreter\n");
        QVERIFY(QFile::setPermissions(program, QFile::ReadOwner | QFile::ExeOwner));
        const CapturedOutput output;
        QVERIFY(!Workspace::shared().open(notifications));
        QCOMPARE(output.lines().size(), 1);
        QVERIFY(output.lines().constFirst().startsWith(settingsFailure + program));
        // This one is first asked for its pages, so its failure comes later.
        Workspace::shared().open(privacy);
        QTRY_COMPARE(output.lines().size(), 2);
        QVERIFY(output.lines().constLast().startsWith(settingsFailure + program));
    }

    void everyOtherUrlGoesToTheDesktop_data()
    {
        QTest::addColumn<QUrl>("url");
        QTest::addColumn<QByteArray>("expected");
        QTest::newRow("web") << QUrl(QStringLiteral("https://example.org/a b?c=d&e#f"))
                             << QByteArray("xdg-open|https://example.org/a%20b?c=d&e#f|\n");
        QTest::newRow("file") << QUrl::fromLocalFile(QStringLiteral("/tmp/-a %\n\"$(b).png"))
                              << QByteArray("xdg-open|file:///tmp/-a%20%25%0A%22$(b).png|\n");
        QTest::newRow("mail") << QUrl(QStringLiteral("mailto:a@example.org"))
                              << QByteArray("xdg-open|mailto:a@example.org|\n");
    }

    void everyOtherUrlGoesToTheDesktop()
    {
        QFETCH(const QUrl, url);
        install(QStringLiteral("xdg-open"));
        const CapturedOutput output;
        QVERIFY(Workspace::shared().open(url));
        QTRY_VERIFY(!started().isEmpty());
        QTEST(started(), "expected");
        QVERIFY(output.lines().isEmpty());
    }

    void withoutTheDesktopsOpenerOneLineSaysSo()
    {
        const CapturedOutput output;
        QVERIFY(!Workspace::shared().open(QUrl(QStringLiteral("https://example.org"))));
        QCOMPARE(output.lines().size(), 1);
        QVERIFY(output.lines().constFirst().startsWith(
            QStringLiteral("Failed to open https://example.org: xdg-open: ")));
    }

    void whatIsNoUrlPrintsOneLine_data()
    {
        QTest::addColumn<QUrl>("url");
        QTest::newRow("empty") << QUrl();
        QTest::newRow("invalid") << QUrl(QStringLiteral("https://a:b:c/"), QUrl::StrictMode);
        QTest::newRow("no scheme") << QUrl(QStringLiteral("--help"));
        QTest::newRow("path") << QUrl(QStringLiteral("/etc/passwd"));
    }

    void whatIsNoUrlPrintsOneLine()
    {
        QFETCH(const QUrl, url);
        install(QStringLiteral("xdg-open"));
        const CapturedOutput output;
        QVERIFY(!Workspace::shared().open(url));
        QCOMPARE(output.lines().size(), 1);
        QVERIFY(output.lines().constFirst().startsWith(QStringLiteral("Failed to open ")));
        QVERIFY(started().isEmpty());
    }

    void inASandboxThePortalOpens()
    {
        qputenv("FLATPAK_ID", "org.deskbroom.Deskbroom");
        install(QStringLiteral("xdg-open"));
        const OpenUriPortal portal(OpenUriPortal::Manner::Accepts);
        const CapturedOutput output;
        QVERIFY(Workspace::shared().open(QUrl(QStringLiteral("https://example.org/a%20b"))));
        QTRY_COMPARE(portal.opened(), QStringList(QStringLiteral("OpenURI https://example.org/a%20b")));
        const QString file = m_home.path() + QStringLiteral("/a b.png");
        files::write(file);
        QVERIFY(Workspace::shared().open(QUrl::fromLocalFile(file)));
        QTRY_COMPARE(portal.opened().size(), 2);
        QCOMPARE(portal.opened().constLast(), QString(QStringLiteral("OpenFile ") + file));
        QVERIFY(!Workspace::shared().open(QUrl::fromLocalFile(file + QStringLiteral(".gone"))));
        QCOMPARE(output.lines().size(), 1);
        QVERIFY(started().isEmpty());
    }

    void theFileManagerSelectsTheFiles()
    {
        install(QStringLiteral("xdg-open"));
        const RecordingFileManager fileManager(RecordingFileManager::Manner::Shows);
        const CapturedOutput output;
        QVERIFY(Workspace::shared().activateFileViewerSelecting(hostileFiles()));
        QVERIFY2(fileManager.shown().isEmpty(), "the answer isn't waited for");
        QTRY_COMPARE(
            fileManager.shown(), QStringList({
                                     QStringLiteral("ShowItems"),
                                     QStringLiteral("file:///srv/shots/-a%20%25%0A%23%22$(b).png"),
                                     QStringLiteral("file:///srv/shots/%E2%80%AEgnp.b.png"),
                                     QStringLiteral("file:///srv/more/c%5C%3Fd.png"),
                                 }));
        QTRY_VERIFY(fileManager.hasAnswered());
        QVERIFY(output.lines().isEmpty());
        QVERIFY(started().isEmpty());
    }

    void withoutAFileManagerTheFoldersOpen_data()
    {
        QTest::addColumn<bool>("isThere");
        QTest::newRow("nobody is there") << false;
        QTest::newRow("it refuses") << true;
    }

    void withoutAFileManagerTheFoldersOpen()
    {
        QFETCH(const bool, isThere);
        install(QStringLiteral("xdg-open"));
        const std::unique_ptr<RecordingFileManager> fileManager =
            isThere ? std::make_unique<RecordingFileManager>(RecordingFileManager::Manner::Refuses) : nullptr;
        const CapturedOutput output;
        QVERIFY(Workspace::shared().activateFileViewerSelecting({hostileFiles().constFirst()}));
        QTRY_COMPARE(started(), QByteArray("xdg-open|file:///srv/shots|\n"));
        QVERIFY(output.lines().isEmpty());
    }

    void eachFolderOpensOnce()
    {
        // Several programs that start at once would write over each other's log: each failure is a line.
        const CapturedOutput output;
        QVERIFY(Workspace::shared().activateFileViewerSelecting(hostileFiles()));
        QTRY_COMPARE(output.lines().size(), 2);
        QVERIFY(output.lines().constFirst().startsWith(
            QStringLiteral("Failed to show file:///srv/shots/-a %25%0A%23")));
        QVERIFY(output.lines().constLast().startsWith(QStringLiteral("Failed to show file:///srv/more/c")));
        QVERIFY(output.lines().constLast().contains(QStringLiteral(": xdg-open: ")));
    }

    void inASandboxThePortalShowsTheFiles()
    {
        qputenv("FLATPAK_ID", "org.deskbroom.Deskbroom");
        install(QStringLiteral("xdg-open"));
        const RecordingFileManager fileManager(RecordingFileManager::Manner::Shows);
        const OpenUriPortal portal(OpenUriPortal::Manner::Accepts);
        const CapturedOutput output;
        const QString file = m_home.path() + QStringLiteral("/-a %\n#.png");
        const QString sibling = m_home.path() + QStringLiteral("/b.png");
        files::write(file);
        files::write(sibling);
        QVERIFY(Workspace::shared().activateFileViewerSelecting(
            {QUrl::fromLocalFile(file), QUrl::fromLocalFile(sibling)}));
        QTRY_COMPARE(portal.opened(), QStringList(QStringLiteral("OpenDirectory ") + file));
        QVERIFY(output.lines().isEmpty());
        QVERIFY(!Workspace::shared().activateFileViewerSelecting(
            {QUrl::fromLocalFile(file + QStringLiteral(".gone"))}));
        QCOMPARE(output.lines().size(), 1);
        QVERIFY(output.lines().constFirst().startsWith(QStringLiteral("Failed to show file:///")));
        QVERIFY(fileManager.shown().isEmpty());
        QVERIFY(started().isEmpty());
    }

    void onlyFilesOfThisMachineAreShown()
    {
        const RecordingFileManager fileManager(RecordingFileManager::Manner::Shows);
        const CapturedOutput output;
        QVERIFY(!Workspace::shared().activateFileViewerSelecting({}));
        QVERIFY(output.lines().isEmpty());
        QVERIFY(!Workspace::shared().activateFileViewerSelecting(
            {QUrl(QStringLiteral("https://example.org/a.png")), QUrl(QStringLiteral("file://host/a.png")),
             QUrl()}));
        QCOMPARE(
            output.lines(), QStringList({
                                QStringLiteral("Failed to show https://example.org/a.png: not a local file"),
                                QStringLiteral("Failed to show file://host/a.png: not a local file"),
                                QStringLiteral("Failed to show : not a local file"),
                            }));
    }

    void whatIsStartedIsNotToldOfOurOwnStart()
    {
        const QByteArray log = m_programs->log().toUtf8();
        files::write(
            m_programs->folder() + QStringLiteral("/xdg-open"),
            "#!/bin/sh\n/usr/bin/env > " + log + ".new\n/bin/mv " + log + ".new " + log + "\n");
        QVERIFY(QFile::setPermissions(
            m_programs->folder() + QStringLiteral("/xdg-open"), QFile::ReadOwner | QFile::ExeOwner));
        qputenv("DESKTOP_STARTUP_ID", "ours_TIME1");
        qputenv("XDG_ACTIVATION_TOKEN", "ours");
        QVERIFY(Workspace::shared().open(hostileFiles().constFirst()));
        qunsetenv("DESKTOP_STARTUP_ID");
        qunsetenv("XDG_ACTIVATION_TOKEN");
        QTRY_VERIFY(!started().isEmpty());
        QVERIFY(started().contains("\nPATH=") || started().startsWith("PATH="));
        QVERIFY(!started().contains("ours"));
    }

    void aPortalThatRefusesPrintsOneLine()
    {
        qputenv("FLATPAK_ID", "org.deskbroom.Deskbroom");
        const CapturedOutput output;
        {
            const OpenUriPortal portal(OpenUriPortal::Manner::Refuses);
            QVERIFY(Workspace::shared().open(QUrl(QStringLiteral("https://example.org"))));
            QTRY_COMPARE(
                output.lines(),
                QStringList(QStringLiteral("Failed to open https://example.org: Not allowed")));
        }
        QVERIFY(Workspace::shared().open(QUrl(QStringLiteral("https://example.org"))));
        QTRY_COMPARE(output.lines().size(), 2);
    }
};

int main(int argc, char *argv[])
{
    // A portal that is installed here would be started by the first question to it.
    const PrivateBus bus;
    qputenv("DBUS_SESSION_BUS_ADDRESS", bus.address().toLatin1());
    const QCoreApplication application(argc, argv);
    WorkspaceTest test;
    return QTest::qExec(&test, argc, argv);
}

#include "WorkspaceTest.moc"
