#include "FileManager.h"

#include "TemporaryHome.h"

#include <QFile>
#include <QTest>

namespace {

QList<QUrl> urls(SearchPathDirectory directory)
{
    return FileManager::defaultManager().urls(directory);
}

void writeFile(const QString &path, const QByteArray &contents)
{
    QFile file(path);
    QVERIFY(file.open(QIODevice::WriteOnly));
    QCOMPARE(file.write(contents), contents.size());
}

void writeUserDirectories(const TemporaryHome &home, const QByteArray &contents)
{
    writeFile(home.path() + QStringLiteral("/.config/user-dirs.dirs"), contents);
}

} // namespace

/// `FileManager::urls`, which reads the XDG user directories.
class UserDirectoriesTest final : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void readsTheConfiguration_data();
    void readsTheConfiguration();
    void readsAfreshAtEveryCall();
    void followsTheConfigurationFolder();
};

void UserDirectoriesTest::readsTheConfiguration_data()
{
    QTest::addColumn<QByteArray>("configuration");
    // Relative to the home folder; empty if it can't be located.
    QTest::addColumn<QString>("desktop");
    QTest::newRow("not set") << QByteArray() << QStringLiteral("/Desktop");
    QTest::newRow("set") << QByteArray("XDG_DESKTOP_DIR=\"$HOME/Schreibtisch\"\n")
                         << QStringLiteral("/Schreibtisch");
    QTest::newRow("no line end") << QByteArray("XDG_DESKTOP_DIR=\"$HOME/D\"") << QStringLiteral("/D");
    QTest::newRow("last one counts") << QByteArray(
                                            "XDG_DESKTOP_DIR=\"$HOME/A\"\nXDG_DESKTOP_DIR=\"$HOME/B\"\n")
                                     << QStringLiteral("/B");
    QTest::newRow("other lines")
        << QByteArray("# XDG_DESKTOP_DIR=\"$HOME/A\"\nXDG_MUSIC_DIR=\"$HOME/M\"\nrubbish\n\n")
        << QStringLiteral("/Desktop");
    QTest::newRow("blanks") << QByteArray("  XDG_DESKTOP_DIR = \"$HOME/With blank\"  \n")
                            << QStringLiteral("/With blank");
    QTest::newRow("escaped quote") << QByteArray("XDG_DESKTOP_DIR=\"$HOME/a\\\"b\\\\c\"\n")
                                   << QStringLiteral("/a\"b\\c");
    QTest::newRow("UTF-8") << QByteArray("XDG_DESKTOP_DIR=\"$HOME/Área de Trabalho\"\n")
                           << QStringLiteral("/Área de Trabalho");
    QTest::newRow("trailing slash") << QByteArray("XDG_DESKTOP_DIR=\"$HOME/D/\"\n") << QStringLiteral("/D");
    QTest::newRow("relative is ignored")
        << QByteArray("XDG_DESKTOP_DIR=\"Elsewhere\"\n") << QStringLiteral("/Desktop");
    QTest::newRow("another variable is ignored")
        << QByteArray("XDG_DESKTOP_DIR=\"$HOMELY/D\"\n") << QStringLiteral("/Desktop");
    QTest::newRow("without quotes is ignored")
        << QByteArray("XDG_DESKTOP_DIR=$HOME/D\n") << QStringLiteral("/Desktop");
    QTest::newRow("home folder switches off") << QByteArray("XDG_DESKTOP_DIR=\"$HOME/\"\n") << QString();
    QTest::newRow("home folder without slash") << QByteArray("XDG_DESKTOP_DIR=\"$HOME\"\n") << QString();
    QTest::newRow("long file") << QByteArray(QByteArray(20'000, '#') + "\nXDG_DESKTOP_DIR=\"$HOME/D\"\n")
                               << QStringLiteral("/D");
}

void UserDirectoriesTest::readsTheConfiguration()
{
    QFETCH(const QByteArray, configuration);
    QFETCH(const QString, desktop);
    const TemporaryHome home;
    if (!configuration.isEmpty()) {
        writeUserDirectories(home, configuration);
    }
    const QList<QUrl> expected =
        desktop.isEmpty() ? QList<QUrl>() : QList<QUrl>{QUrl::fromLocalFile(home.path() + desktop)};
    QCOMPARE(urls(SearchPathDirectory::Desktop), expected);
    QCOMPARE(urls(SearchPathDirectory::Pictures), QList<QUrl>{QUrl::fromLocalFile(home.pictures())});
    QCOMPARE(urls(SearchPathDirectory::Downloads), QList<QUrl>{QUrl::fromLocalFile(home.downloads())});
}

void UserDirectoriesTest::readsAfreshAtEveryCall()
{
    const TemporaryHome home;
    writeUserDirectories(home, "XDG_PICTURES_DIR=\"/srv/one\"\nXDG_DOWNLOAD_DIR=\"$HOME/Load\"\n");
    QCOMPARE(urls(SearchPathDirectory::Pictures).value(0).path(), QStringLiteral("/srv/one"));
    QCOMPARE(urls(SearchPathDirectory::Downloads).value(0).path(), home.path() + QStringLiteral("/Load"));
    writeUserDirectories(home, "XDG_PICTURES_DIR=\"/srv/two\"\n");
    QCOMPARE(urls(SearchPathDirectory::Pictures).value(0).path(), QStringLiteral("/srv/two"));
}

void UserDirectoriesTest::followsTheConfigurationFolder()
{
    const TemporaryHome home;
    writeFile(home.path() + QStringLiteral("/user-dirs.dirs"), "XDG_DESKTOP_DIR=\"/srv/desk\"\n");
    qputenv("XDG_CONFIG_HOME", QFile::encodeName(home.path()));
    QCOMPARE(urls(SearchPathDirectory::Desktop).value(0).path(), QStringLiteral("/srv/desk"));
    writeUserDirectories(home, "XDG_DESKTOP_DIR=\"/srv/default\"\n");
    qunsetenv("XDG_CONFIG_HOME");
    QCOMPARE(urls(SearchPathDirectory::Desktop).value(0).path(), QStringLiteral("/srv/default"));
}

QTEST_GUILESS_MAIN(UserDirectoriesTest)
#include "UserDirectoriesTest.moc"
