#include "KConfigFile.h"

#include "TemporaryHome.h"
#include "files.h"

#include <QTest>

#include <sys/stat.h>

/// Settings files as KDE's programs write them.
class KConfigFileTest final : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void readsAnEntry_data();
    void readsAnEntry();
    void readsNestedGroups();
    void readsEntriesWithoutAGroup();
    void hasNothingWithoutAFile();
    void passesOverWhatIsNoSettingsFile();
};

void KConfigFileTest::readsAnEntry_data()
{
    QTest::addColumn<QByteArray>("contents");
    // Null if there is none.
    QTest::addColumn<QString>("value");
    const QString a = QStringLiteral("a");
    QTest::newRow("plain") << QByteArray("[Save]\nkey=a\n") << a;
    QTest::newRow("no line end") << QByteArray("[Save]\nkey=a") << a;
    QTest::newRow("carriage returns") << QByteArray("[Save]\r\nkey=a\r\n") << a;
    QTest::newRow("blanks around") << QByteArray(" [Save] \n  key = a b \n") << QStringLiteral("a b");
    QTest::newRow("empty") << QByteArray("[Save]\nkey=\n") << QStringLiteral("");
    QTest::newRow("last one counts") << QByteArray("[Save]\nkey=b\nkey=a\n") << a;
    QTest::newRow("group that comes twice")
        << QByteArray("[Save]\nkey=b\n[Other]\nx=1\n[Save]\nkey=a\n") << a;
    QTest::newRow("another group") << QByteArray("[Other]\nkey=a\n") << QString();
    QTest::newRow("a group within") << QByteArray("[Save][Other]\nkey=a\n") << QString();
    QTest::newRow("no group") << QByteArray("key=a\n") << QString();
    QTest::newRow("longer key") << QByteArray("[Save]\nkeys=a\n") << QString();
    QTest::newRow("comment") << QByteArray("[Save]\n#key=a\n;key=a\n") << QString();
    QTest::newRow("no equals sign") << QByteArray("[Save]\nkey\n=\n") << QString();
    QTest::newRow("immutable group") << QByteArray("[Save][$i]\nkey=a\n") << a;
    QTest::newRow("immutable key") << QByteArray("[Save]\nkey[$i]=a\n") << a;
    QTest::newRow("deleted") << QByteArray("[Save]\nkey=a\nkey[$d]\n key[$d]=\n") << QString();
    QTest::newRow("deleted, then set") << QByteArray("[Save]\nkey[$d]\nkey=a\n") << a;
    QTest::newRow("of immutable entries the first")
        << QByteArray("[Save]\nkey=b\nkey[$i]=a\nkey=c\nkey[$d]\n") << a;
    QTest::newRow("immutable file") << QByteArray("[$i]\n[Save]\nkey=a\n") << a;
    QTest::newRow("another language") << QByteArray("[Save]\nkey=a\nkey[de]=b\n") << a;
    QTest::newRow("UTF-8") << QByteArray("[Save]\nkey=Área\n") << QStringLiteral("Área");
    QTest::newRow("escapes") << QByteArray("[Save]\nkey=\\sa\\tb\\\\c\\x41\\n\n")
                             << QStringLiteral(" a\tb\\cA\n");
    QTest::newRow("damaged escapes") << QByteArray("[Save]\nkey=\\xZZ\\x4\\\n") << QStringLiteral("xZZx4\\");
    QTest::newRow("variable") << QByteArray("[Save]\nkey[$e]=file://$KCONFIG_TEST/b\n")
                              << QStringLiteral("file:///home/a/b");
    QTest::newRow("variable in braces")
        << QByteArray("[Save]\nkey[$ei]=${KCONFIG_TEST}b\n") << QStringLiteral("/home/ab");
    QTest::newRow("dollar signs") << QByteArray("[Save]\nkey[$e]=$$a$ ${b$\n") << QStringLiteral("$a$ ${b$");
    QTest::newRow("unset variable") << QByteArray("[Save]\nkey[$e]=$KCONFIG_UNSET/a\n")
                                    << QStringLiteral("/a");
    QTest::newRow("variable that isn't meant")
        << QByteArray("[Save]\nkey=$KCONFIG_TEST\n") << QStringLiteral("$KCONFIG_TEST");
    QTest::newRow("a command is text")
        << QByteArray("[Save]\nkey[$e]=$(echo a)\n") << QStringLiteral("$(echo a)");
    QTest::newRow("rubbish") << QByteArray("\0\xff\xfe[[[=]]\n=\n[Save", 14) << QString();
}

void KConfigFileTest::readsAnEntry()
{
    QFETCH(const QByteArray, contents);
    QFETCH(const QString, value);
    const TemporaryHome home;
    qputenv("KCONFIG_TEST", "/home/a");
    const QString path = home.path() + QStringLiteral("/rc");
    files::write(path, contents);
    const auto entry = readKConfigEntry(path, {QStringLiteral("Save")}, QStringLiteral("key"));
    QCOMPARE(entry.has_value(), !value.isNull());
    QCOMPARE(entry.value_or(QString()), value);
}

void KConfigFileTest::readsNestedGroups()
{
    const TemporaryHome home;
    const QString path = home.path() + QStringLiteral("/rc");
    files::write(path, "[One]\nkey=a\n[One][Two]\nkey=b\n");
    const QStringList groups{QStringLiteral("One"), QStringLiteral("Two")};
    QCOMPARE(readKConfigEntry(path, groups, QStringLiteral("key")), QStringLiteral("b"));
}

void KConfigFileTest::readsEntriesWithoutAGroup()
{
    const TemporaryHome home;
    const QString path = home.path() + QStringLiteral("/rc");
    files::write(path, "key=a\n[One]\nkey=b\n");
    QCOMPARE(readKConfigEntry(path, {}, QStringLiteral("key")), QStringLiteral("a"));
}

void KConfigFileTest::hasNothingWithoutAFile()
{
    const TemporaryHome home;
    const QString path = home.path() + QStringLiteral("/rc");
    QVERIFY(!readKConfigEntry(path, {}, QStringLiteral("key")));
}

void KConfigFileTest::passesOverWhatIsNoSettingsFile()
{
    const TemporaryHome home;
    QVERIFY(!readKConfigEntry(home.path(), {}, QStringLiteral("key")));

    const QString fifo = home.path() + QStringLiteral("/fifo");
    QCOMPARE(::mkfifo(fifo.toUtf8().constData(), 0600), 0);
    QVERIFY(!readKConfigEntry(fifo, {}, QStringLiteral("key")));

    const QString huge = home.path() + QStringLiteral("/huge");
    files::write(huge, "key=a\n" + QByteArray(1 << 20, '#'));
    QVERIFY(!readKConfigEntry(huge, {}, QStringLiteral("key")));
}

QTEST_GUILESS_MAIN(KConfigFileTest)
#include "KConfigFileTest.moc"
