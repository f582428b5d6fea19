#include "TerminationSignals.h"

#include <QCoreApplication>
#include <QProcess>
#include <QTest>
#include <QTimer>

#include <csignal>
#include <cstdio>
#include <cstdlib>

namespace {

/// What the child process does: waits for a signal in its event loop, and says that it has left it.
int waitForSignal(int argc, char *argv[])
{
    TerminationSignals::install();
    if (qEnvironmentVariableIsSet("SIGNAL_EARLY")) {
        std::raise(SIGTERM);
    }
    std::raise(SIGPIPE);
    std::raise(SIGIO);
    QCoreApplication application(argc, argv);
    const TerminationSignals signalsOfTheProcess;
    QTimer::singleShot(0, &application, [] {
        std::puts("waiting");
        std::fflush(stdout);
    });
    QCoreApplication::exec();
    std::puts("put away");
    return 3;
}

/// What a program that was started by ours finds: the names of the signals that it can't be ended with.
int reportInheritedSignals()
{
    sigset_t blocked = {};
    sigprocmask(SIG_BLOCK, nullptr, &blocked);
    for (const int signalNumber : {SIGTERM, SIGINT, SIGHUP, SIGIO}) {
        struct sigaction action = {};
        sigaction(signalNumber, nullptr, &action);
        if (sigismember(&blocked, signalNumber) != 0 || action.sa_handler != SIG_DFL) {
            std::printf("%d ", signalNumber);
        }
    }
    std::puts("inherited");
    return 0;
}

} // namespace

class TerminationSignalsTest : public QObject {
    Q_OBJECT

private Q_SLOTS:

    void aSignalEndsTheLoop_data()
    {
        QTest::addColumn<int>("signalNumber");
        QTest::newRow("terminate") << SIGTERM;
        QTest::newRow("interrupt") << SIGINT;
        QTest::newRow("hang up") << SIGHUP;
    }

    void aSignalEndsTheLoop()
    {
        QFETCH(const int, signalNumber);
        QProcess child;
        child.start(QCoreApplication::applicationFilePath(), {QStringLiteral("--wait-for-signal")});
        QVERIFY(child.waitForReadyRead());
        QCOMPARE(child.readAll(), QByteArray("waiting\n"));
        QCOMPARE(::kill(static_cast<pid_t>(child.processId()), signalNumber), 0);
        QVERIFY(child.waitForFinished());
        QCOMPARE(child.exitStatus(), QProcess::NormalExit);
        QCOMPARE(child.exitCode(), 3);
        QCOMPARE(child.readAll(), QByteArray("put away\n"));
    }

    void aSignalBeforeTheLoopEndsItToo()
    {
        QProcess child;
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        environment.insert(QStringLiteral("SIGNAL_EARLY"), QStringLiteral("1"));
        child.setProcessEnvironment(environment);
        child.start(QCoreApplication::applicationFilePath(), {QStringLiteral("--wait-for-signal")});
        QVERIFY(child.waitForFinished());
        QCOMPARE(child.exitStatus(), QProcess::NormalExit);
        QVERIFY(child.readAll().endsWith("put away\n"));
    }

    void whatIsStartedFromHereCanBeEndedAsUsual()
    {
        TerminationSignals::install();
        QProcess child;
        child.start(QCoreApplication::applicationFilePath(), {QStringLiteral("--report-signals")});
        QVERIFY(child.waitForFinished());
        QCOMPARE(child.readAll(), QByteArray("inherited\n"));
    }
};

int main(int argc, char *argv[])
{
    const QByteArray role = argc > 1 ? QByteArray(argv[1]) : QByteArray();
    if (role == "--wait-for-signal") {
        return waitForSignal(argc, argv);
    }
    if (role == "--report-signals") {
        return reportInheritedSignals();
    }
    const QCoreApplication application(argc, argv);
    TerminationSignalsTest test;
    return QTest::qExec(&test, argc, argv);
}

#include "TerminationSignalsTest.moc"
