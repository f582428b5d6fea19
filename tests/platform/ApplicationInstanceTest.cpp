#include "ApplicationInstance.h"

#include "PrivateBus.h"

#include <QCoreApplication>
#include <QDBusConnection>
#include <QDBusConnectionInterface>
#include <QDBusMessage>
#include <QProcess>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>

#include <csignal>
#include <cstdio>

namespace {

const QString busName = QStringLiteral("org.deskbroom.Deskbroom");

/// A second start of the program: ends with 0 if it has handed over, or says "first" and stays.
int startTheProgram(int argc, char *argv[])
{
    const QCoreApplication application(argc, argv);
    ApplicationInstance instance;
    instance.claim([](ApplicationInstance::Role role) {
        if (role == ApplicationInstance::Role::HandedOver) {
            QCoreApplication::exit(0);
        } else {
            std::puts("first");
            std::fflush(stdout);
        }
    });
    QObject::connect(&instance, &ApplicationInstance::activated, [] {
        std::puts("activated");
        std::fflush(stdout);
    });
    return QCoreApplication::exec();
}

struct Start {
    explicit Start(const QProcessEnvironment &environment)
    {
        process.setProcessChannelMode(QProcess::ForwardedErrorChannel);
        process.setProcessEnvironment(environment);
        process.start(QCoreApplication::applicationFilePath(), {QStringLiteral("--start")});
    }

    ~Start()
    {
        process.kill();
        process.waitForFinished();
    }

    Q_DISABLE_COPY_MOVE(Start)

    QProcess process;
    QByteArray output;

    bool hasPrinted(const QByteArray &line)
    {
        output += process.readAll();
        return output.split('\n').contains(line);
    }
};

QDBusMessage callToApplication(const QString &method)
{
    return QDBusMessage::createMethodCall(
        busName, QStringLiteral("/org/deskbroom/Deskbroom"), QStringLiteral("org.freedesktop.Application"),
        method);
}

} // namespace

class ApplicationInstanceTest : public QObject {
    Q_OBJECT

private:
    [[nodiscard]] static QDBusMessage answerTo(const QDBusMessage &message)
    {
        const QDBusPendingCall call = QDBusConnection::sessionBus().asyncCall(message);
        [&call] { QTRY_VERIFY(call.isFinished()); }();
        return call.reply();
    }

private Q_SLOTS:

    void aSecondStartActivatesTheFirstAndEnds()
    {
        QList<ApplicationInstance::Role> roles;
        ApplicationInstance first;
        first.claim([&roles](ApplicationInstance::Role role) { roles += role; });
        QVERIFY2(roles.isEmpty(), "never before the call has returned");
        QTRY_COMPARE(roles, QList{ApplicationInstance::Role::First});
        const QSignalSpy activated(&first, &ApplicationInstance::activated);

        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        environment.insert(QStringLiteral("XDG_ACTIVATION_TOKEN"), QStringLiteral("token-1"));
        qunsetenv("XDG_ACTIVATION_TOKEN");
        Start second(environment);
        QTRY_COMPARE(second.process.state(), QProcess::NotRunning);
        QCOMPARE(second.process.exitStatus(), QProcess::NormalExit);
        QCOMPARE(second.process.exitCode(), 0);
        QCOMPARE(activated.size(), 1);
        QCOMPARE(qgetenv("XDG_ACTIVATION_TOKEN"), QByteArray("token-1"));
    }

    void theDesktopReachesTheApplication()
    {
        bool isFirst = false;
        ApplicationInstance instance;
        instance.claim([&isFirst](ApplicationInstance::Role role) {
            isFirst = role == ApplicationInstance::Role::First;
        });
        QTRY_VERIFY(isFirst);
        const QSignalSpy activated(&instance, &ApplicationInstance::activated);

        QCOMPARE(
            answerTo(callToApplication(QStringLiteral("Activate")) << QVariantMap()).type(),
            QDBusMessage::ReplyMessage);
        QCOMPARE(activated.size(), 1);
        QCOMPARE(
            answerTo(callToApplication(QStringLiteral("Open")) << QStringList() << QVariantMap()).type(),
            QDBusMessage::ReplyMessage);
        QCOMPARE(activated.size(), 2);
        const QDBusMessage refusal = answerTo(
            callToApplication(QStringLiteral("ActivateAction"))
            << QStringLiteral("none") << QVariantList() << QVariantMap());
        QCOMPARE(refusal.errorName(), QStringLiteral("org.freedesktop.DBus.Error.InvalidArgs"));
        QCOMPARE(activated.size(), 2);
    }

    void theNameIsFreeAgainAfterwards()
    {
        bool isFirst = false;
        {
            ApplicationInstance instance;
            instance.claim([&isFirst](ApplicationInstance::Role role) {
                isFirst = role == ApplicationInstance::Role::First;
            });
            QTRY_VERIFY(isFirst);
        }
        Start next(QProcessEnvironment::systemEnvironment());
        QTRY_VERIFY(next.hasPrinted("first"));
    }

    void withoutABusTheRuntimeFolderTells()
    {
        const QTemporaryDir runtimeFolder;
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        environment.insert(
            QStringLiteral("DBUS_SESSION_BUS_ADDRESS"), QStringLiteral("unix:path=/nonexistent/bus"));
        environment.insert(QStringLiteral("XDG_RUNTIME_DIR"), runtimeFolder.path());
        {
            Start first(environment);
            QTRY_VERIFY(first.hasPrinted("first"));
            Start second(environment);
            QTRY_COMPARE(second.process.state(), QProcess::NotRunning);
            QCOMPARE(second.process.exitCode(), 0);
            QTRY_VERIFY(first.hasPrinted("activated"));
        }
        // The first was killed, and its socket still lies there.
        Start third(environment);
        QTRY_VERIFY(third.hasPrinted("first"));
    }

    void withoutAnythingTheProgramStarts()
    {
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        environment.insert(
            QStringLiteral("DBUS_SESSION_BUS_ADDRESS"), QStringLiteral("unix:path=/nonexistent/bus"));
        environment.remove(QStringLiteral("XDG_RUNTIME_DIR"));
        Start only(environment);
        QTRY_VERIFY(only.hasPrinted("first"));
    }

    void aBusThatGoesAwayTakesNothingAlong()
    {
        PrivateBus bus;
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        environment.insert(QStringLiteral("DBUS_SESSION_BUS_ADDRESS"), bus.address());
        Start program(environment);
        QTRY_VERIFY(program.hasPrinted("first"));
        bus.kill();
        QVERIFY(!program.process.waitForFinished(500));
        program.process.terminate();
        QVERIFY(program.process.waitForFinished());
        QCOMPARE(program.process.exitStatus(), QProcess::CrashExit);
        QCOMPARE(program.process.exitCode(), SIGTERM);
    }
};

int main(int argc, char *argv[])
{
    if (argc > 1 && QByteArray(argv[1]) == "--start") {
        return startTheProgram(argc, argv);
    }
    const QCoreApplication application(argc, argv);
    ApplicationInstanceTest test;
    return QTest::qExec(&test, argc, argv);
}

#include "ApplicationInstanceTest.moc"
