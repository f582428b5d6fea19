#include "UpdaterController.h"

#include "CapturedOutput.h"
#include "TemporaryHome.h"

#include <QDir>
#include <QFile>
#include <QTest>

class UpdaterControllerTest : public QObject {
    Q_OBJECT

private:
    [[nodiscard]] QString log() const { return m_home.path() + QStringLiteral("/started"); }

    [[nodiscard]] QByteArray started() const
    {
        QFile file(log());
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    }

    /// A program on the search path that writes down how it was started.
    void install(const QString &name, const QByteArray &interpreter = QByteArrayLiteral("/bin/sh")) const
    {
        QFile program(m_home.path() + QStringLiteral("/bin/") + name);
        QVERIFY(program.open(QIODevice::WriteOnly | QIODevice::Truncate));
        program.write(
            "#!" + interpreter + "\necho chatter\necho \"${0##*/}\" \"$@\" > " + log().toUtf8() + "\n");
        QVERIFY(program.setPermissions(QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner));
    }

    TemporaryHome m_home;

private Q_SLOTS:

    void init()
    {
        const QString folder = m_home.path() + QStringLiteral("/bin");
        QDir(folder).removeRecursively();
        QVERIFY(QDir().mkpath(folder));
        qputenv("PATH", folder.toUtf8());
        qunsetenv("XDG_CURRENT_DESKTOP");
        QFile::remove(log());
    }

    void withoutASoftwareCentreThereIsNothingToCheckWith()
    {
        const UpdaterController updater;
        QVERIFY(!updater.canCheckForUpdates());
        install(QStringLiteral("gpk-update-viewer"));
        QVERIFY2(updater.canCheckForUpdates(), "one that is installed meanwhile is found");
    }

    void theRunningDesktopsOwnComesFirst_data()
    {
        QTest::addColumn<QByteArray>("desktop");
        QTest::addColumn<QByteArray>("expected");
        QTest::newRow("GNOME") << QByteArray("ubuntu:GNOME") << QByteArray("gnome-software --mode=updates\n");
        QTest::newRow("Plasma") << QByteArray("KDE") << QByteArray("plasma-discover --mode update\n");
        QTest::newRow("Cinnamon") << QByteArray("X-Cinnamon") << QByteArray("mintupdate\n");
        QTest::newRow("no desktop") << QByteArray() << QByteArray("gnome-software --mode=updates\n");
    }

    void theRunningDesktopsOwnComesFirst()
    {
        for (const QString &name :
             {QStringLiteral("gnome-software"), QStringLiteral("plasma-discover"),
              QStringLiteral("mintupdate")}) {
            install(name);
        }
        QFETCH(const QByteArray, desktop);
        qputenv("XDG_CURRENT_DESKTOP", desktop);
        const CapturedOutput output;
        UpdaterController().checkForUpdates();
        QTRY_VERIFY(started().endsWith('\n'));
        QTEST(started(), "expected");
        QVERIFY2(output.lines().isEmpty(), "its chatter isn't ours");
    }

    void aStartThatFailsPrintsOneLine()
    {
        install(QStringLiteral("gnome-software"), QByteArrayLiteral("/no/such/interpreter"));
        const CapturedOutput output;
        UpdaterController().checkForUpdates();
        QVERIFY(!QFile::exists(log()));
        QCOMPARE(output.lines().size(), 1);
        QVERIFY(output.lines().first().startsWith(QStringLiteral("Failed to check for updates: ")));
    }
};

QTEST_GUILESS_MAIN(UpdaterControllerTest)
#include "UpdaterControllerTest.moc"
