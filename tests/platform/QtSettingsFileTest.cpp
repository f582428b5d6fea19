#include "QtSettingsFile.h"

#include "TemporaryHome.h"
#include "files.h"

#include <QDir>
#include <QSettings>
#include <QTest>

namespace {

std::optional<QString> entry(const QString &path)
{
    return readQtSettingsEntry(path, QStringLiteral("Save"), QStringLiteral("key"));
}

} // namespace

/// Settings files as Qt's programs write them.
class QtSettingsFileTest final : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void readsWhatTheToolkitWrites_data();
    void readsWhatTheToolkitWrites();
    void readsWhatEarlierToolkitsWrote();
    void takesKeysOutsideAllGroupsFromGeneral();
    void hasNothingWithoutTheEntry();
    void leavesNoTraces();
};

void QtSettingsFileTest::readsWhatTheToolkitWrites_data()
{
    QTest::addColumn<QString>("value");
    QTest::newRow("path") << QStringLiteral("/home/a/Pictures");
    QTest::newRow("blanks") << QStringLiteral(" a b ");
    QTest::newRow("comma and semicolon") << QStringLiteral("/a,b;c");
    QTest::newRow("quotes and backslash") << QStringLiteral("/\"a\"\\b");
    QTest::newRow("equals and percent") << QStringLiteral("/a=b%20c");
    QTest::newRow("umlauts") << QStringLiteral("/Bücher/Área/\u2019");
    QTest::newRow("control characters, then digits") << QStringLiteral("a\n\t\x01"
                                                                       "1f");
    QTest::newRow("outside the basic plane") << QStringLiteral("/\U0001F4F7");
    QTest::newRow("empty") << QStringLiteral("");
}

void QtSettingsFileTest::readsWhatTheToolkitWrites()
{
    QFETCH(const QString, value);
    const TemporaryHome home;
    const QString path = home.path() + QStringLiteral("/program.ini");
    {
        QSettings settings(path, QSettings::IniFormat);
        settings.setValue("Save/key", value);
        settings.setValue("Save/other", QStringLiteral("other"));
        settings.setValue("key", QStringLiteral("another group"));
    }
    QCOMPARE(entry(path), value);
}

void QtSettingsFileTest::readsWhatEarlierToolkitsWrote()
{
    const TemporaryHome home;
    const QString path = home.path() + QStringLiteral("/program.ini");
    files::write(path, "[Save]\nkey=/Captures d\\x2019\\xe9\\x63ran\n");
    QCOMPARE(entry(path), QStringLiteral("/Captures d’écran"));
}

void QtSettingsFileTest::takesKeysOutsideAllGroupsFromGeneral()
{
    const TemporaryHome home;
    const QString path = home.path() + QStringLiteral("/program.ini");
    {
        QSettings settings(path, QSettings::IniFormat);
        settings.setValue("savePath", QStringLiteral("/a"));
    }
    QCOMPARE(
        readQtSettingsEntry(path, QStringLiteral("General"), QStringLiteral("savePath")),
        QStringLiteral("/a"));
}

void QtSettingsFileTest::hasNothingWithoutTheEntry()
{
    const TemporaryHome home;
    const QString path = home.path() + QStringLiteral("/program.ini");
    QVERIFY(!entry(path));
    files::write(path, "[Other]\nkey=a\n[Save]\nkeys=a\nkey\n");
    QVERIFY(!entry(path));
    QVERIFY(!entry(home.path()));
}

void QtSettingsFileTest::leavesNoTraces()
{
    const TemporaryHome home;
    const QString folder = home.path() + QStringLiteral("/program");
    files::makeFolder(folder);
    QVERIFY(!entry(folder + QStringLiteral("/program.ini")));
    files::write(folder + QStringLiteral("/program.ini"), "[Save]\nkey=a\n");
    QCOMPARE(entry(folder + QStringLiteral("/program.ini")), QStringLiteral("a"));
    QCOMPARE(
        QDir(folder).entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot),
        QStringList{QStringLiteral("program.ini")});
}

QTEST_GUILESS_MAIN(QtSettingsFileTest)
#include "QtSettingsFileTest.moc"
