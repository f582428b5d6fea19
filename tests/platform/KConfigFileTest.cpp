#include "KConfigFile.h"

#include "configurationFile.h"
#include "files.h"

#include <QTemporaryDir>
#include <QTest>

#include <sys/stat.h>

class KConfigFileTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void findsTheValueOfTheGroup_data();
    void findsTheValueOfTheGroup();
    void knowsNothingOfWhatIsNoFile();
    void passesOverAFileOfAbsurdSize();

private:
    [[nodiscard]] QString path() const { return m_folder.filePath(QStringLiteral("rc")); }

    QTemporaryDir m_folder;
};

void KConfigFileTest::findsTheValueOfTheGroup_data()
{
    QTest::addColumn<QByteArray>("contents");
    QTest::addColumn<QString>("expected");
    const auto row = [](const char *name, const QByteArray &contents, const QString &expected) {
        QTest::newRow(name) << contents << expected;
    };
    const QString value = QStringLiteral("value");
    row("alone", "[Outer][Inner]\nkey=value\n", value);
    row("among others", "[A]\nkey=a\n[Outer]\nkey=b\n[Outer][Inner]\nother=c\nkey=value\n[Z]\nkey=z\n",
        value);
    row("spaces around", "  [Outer][Inner] \r\n key = value \r\n", value);
    row("no line end", "[Outer][Inner]\nkey=value", value);
    row("the last line counts", "[Outer][Inner]\nkey=a\nkey=value\n", value);
    row("group in two places", "[Outer][Inner]\nkey=a\n[Z]\n[Outer][Inner]\nkey=value\n", value);
    row("locked", "[Outer][Inner][$i]\nkey=a\n[Outer][Inner]\nkey[$i]=value\n", value);
    row("comment", "[Outer][Inner]\nkey=value\n#key=comment\n", value);
    row("translation", "[Outer][Inner]\nkey=value\nkey[de]=Wert\n", value);
    row("escapes", R"([Outer][Inner]
key=\sa\tb\nc\\d\x41\s)",
        QStringLiteral(" a\tb\nc\\dA "));
    row("broken escapes", "[Outer][Inner]\nkey=\\x4 \\q \\", QStringLiteral("x4 q \\"));
    row("equals sign", "[Outer][Inner]\nkey=a=b\n", QStringLiteral("a=b"));
    row("empty value", "[Outer][Inner]\nkey=\n", QStringLiteral(""));
    row("UTF-8", "[Outer][Inner]\nkey=\xC3\xA4\n", QStringLiteral("ä"));
    row("escaped brackets", "[Outer][In\\x6eer]\nkey=value\n", value);
    row("another group", "[Outer]\nkey=a\n[Inner]\nkey=b\n[Outer][Inner][Third]\nkey=c\n", QString());
    row("another key", "[Outer][Inner]\nkeys=a\nke=b\n", QString());
    row("no value", "[Outer][Inner]\nkey\n", QString());
    row("unclosed group", "[Outer][Inner\nkey=a\n", QString());
    row("empty", "", QString());
    row("bytes of any kind", QByteArray(1, '\0') + "\xFF[\n]=\n=\n[]\n[Outer][Inner]\n\x01=\xFF\n=\n",
        QString());
}

void KConfigFileTest::findsTheValueOfTheGroup()
{
    QFETCH(const QByteArray, contents);
    QFETCH(const QString, expected);
    files::write(path(), contents);

    const std::optional<QString> value =
        readKConfigEntry(path(), {QStringLiteral("Outer"), QStringLiteral("Inner")}, QStringLiteral("key"));

    QCOMPARE(value.has_value(), !expected.isNull());
    QCOMPARE(value.value_or(QString()), expected);
}

void KConfigFileTest::knowsNothingOfWhatIsNoFile()
{
    const QString fifo = m_folder.filePath(QStringLiteral("fifo"));
    QCOMPARE(::mkfifo(fifo.toLocal8Bit().constData(), 0600), 0);

    for (const QString &place : {fifo, m_folder.path(), m_folder.filePath(QStringLiteral("missing"))}) {
        QCOMPARE(readKConfigEntry(place, {}, QStringLiteral("key")), std::nullopt);
    }
}

void KConfigFileTest::passesOverAFileOfAbsurdSize()
{
    const QByteArray entry = "key=value\n";
    files::write(path(), entry + QByteArray(configurationFile::mostBytes - entry.size(), '#'));
    QCOMPARE(readKConfigEntry(path(), {}, QStringLiteral("key")), QStringLiteral("value"));

    files::write(path(), entry + QByteArray(configurationFile::mostBytes, '#'));
    QCOMPARE(readKConfigEntry(path(), {}, QStringLiteral("key")), std::nullopt);
}

QTEST_APPLESS_MAIN(KConfigFileTest)

#include "KConfigFileTest.moc"
