#include "StatusNotifierWatcherClient.h"

#include "CapturedOutput.h"
#include "RecordingStatusNotifierWatcher.h"

#include <QCoreApplication>
#include <QProcess>
#include <QSignalSpy>
#include <QTest>

#include <memory>

using Host = StatusNotifierWatcherClient::Host;
using Watcher = RecordingStatusNotifierWatcher;

class StatusNotifierWatcherClientTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void registersWithItsUniqueName();
    void knowsTheWatchersProcess();
    void waitsForALateWatcher();
    void registersAgainWithEachNewWatcher();
    void followsHostsThatComeAndGo();
    void aBusThatGoesAwayTakesTheHostWithIt();
};

void StatusNotifierWatcherClientTest::registersWithItsUniqueName()
{
    const Watcher watcher;
    const StatusNotifierWatcherClient client(QDBusConnection::sessionBus());
    QCOMPARE(client.host(), Host::Unknown);

    QTRY_COMPARE(client.host(), Host::Present);
    QTRY_COMPARE(watcher.registeredItems(), QStringList{QDBusConnection::sessionBus().baseService()});
}

void StatusNotifierWatcherClientTest::knowsTheWatchersProcess()
{
    const Watcher watcher;
    const StatusNotifierWatcherClient client(QDBusConnection::sessionBus());

    QTRY_COMPARE(client.watcherProcess(), std::optional(uint(QCoreApplication::applicationPid())));
}

void StatusNotifierWatcherClientTest::waitsForALateWatcher()
{
    const StatusNotifierWatcherClient client(QDBusConnection::sessionBus());
    QTRY_COMPARE(client.host(), Host::Absent);

    const Watcher watcher;

    QTRY_COMPARE(client.host(), Host::Present);
    QTRY_COMPARE(watcher.registeredItems().size(), 1);
}

void StatusNotifierWatcherClientTest::registersAgainWithEachNewWatcher()
{
    auto watcher = std::make_unique<Watcher>();
    const StatusNotifierWatcherClient client(QDBusConnection::sessionBus());
    QTRY_COMPARE(watcher->registeredItems().size(), 1);

    watcher.reset();
    QTRY_COMPARE(client.host(), Host::Absent);
    QCOMPARE(client.watcherProcess(), std::optional<uint>());

    watcher = std::make_unique<Watcher>();
    QTRY_COMPARE(client.host(), Host::Present);
    QTRY_COMPARE(watcher->registeredItems().size(), 1);
}

void StatusNotifierWatcherClientTest::followsHostsThatComeAndGo()
{
    Watcher watcher(Watcher::Host::Missing);
    const StatusNotifierWatcherClient client(QDBusConnection::sessionBus());
    QTRY_COMPARE(client.host(), Host::Absent);
    // Registered all the same, so that the item is there as soon as the host is.
    QTRY_COMPARE(watcher.registeredItems().size(), 1);

    watcher.setHost(Watcher::Host::Here);
    QTRY_COMPARE(client.host(), Host::Present);
    watcher.setHost(Watcher::Host::Missing);
    QTRY_COMPARE(client.host(), Host::Absent);
    QCOMPARE(watcher.registeredItems().size(), 1);
}

void StatusNotifierWatcherClientTest::aBusThatGoesAwayTakesTheHostWithIt()
{
    QProcess daemon;
    daemon.start(
        QStringLiteral("dbus-daemon"),
        {QStringLiteral("--session"), QStringLiteral("--nofork"), QStringLiteral("--print-address")});
    QVERIFY(daemon.waitForReadyRead());
    const QString address = QString::fromUtf8(daemon.readLine().trimmed());
    const QDBusConnection bus = QDBusConnection::connectToBus(address, QStringLiteral("short-lived"));
    QVERIFY(bus.isConnected());
    const Watcher watcher(QDBusConnection::connectToBus(address, QStringLiteral("short-lived panel")));
    const StatusNotifierWatcherClient client(bus);
    QTRY_COMPARE(client.host(), Host::Present);

    const CapturedOutput output;

    daemon.kill();
    QVERIFY(daemon.waitForFinished());

    QTRY_COMPARE(client.host(), Host::Absent);
    QCOMPARE(output.lines(), QStringList{QStringLiteral("The session bus went away")});
}

QTEST_GUILESS_MAIN(StatusNotifierWatcherClientTest)

#include "StatusNotifierWatcherClientTest.moc"
