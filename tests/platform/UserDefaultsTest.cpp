#include "UserDefaults.h"

#include "CapturedOutput.h"
#include "TemporaryHome.h"

#include <QDir>
#include <QFile>
#include <QJsonDocument>
#include <QJsonObject>
#include <QTest>

#include <sys/stat.h>
#include <unistd.h>

#include <limits>
#include <thread>

namespace {

const QString minutes = QStringLiteral("timeframeInMinutes");
const QString bookmark = QStringLiteral("DesktopFolderBookmark");

} // namespace

class UserDefaultsTest : public QObject {
    Q_OBJECT

private:
    [[nodiscard]] QString folder() const { return m_home.path() + QStringLiteral("/.config/Deskbroom"); }

    [[nodiscard]] QString file() const { return folder() + QStringLiteral("/Deskbroom.json"); }

    [[nodiscard]] static QByteArray contents(const QString &path)
    {
        QFile file(path);
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    }

    void writeFile(const QByteArray &bytes) const
    {
        QVERIFY(QDir().mkpath(folder()));
        QFile written(file());
        QVERIFY(written.open(QIODevice::WriteOnly));
        QCOMPARE(written.write(bytes), bytes.size());
    }

    TemporaryHome m_home;
    UserDefaults &m_defaults = UserDefaults::standard();

private Q_SLOTS:

    void init() { QDir(folder()).removeRecursively(); }

    void anAbsentKeyIsNotAZero()
    {
        QVERIFY(!m_defaults.contains(minutes));
        QCOMPARE(m_defaults.integer(minutes), 0);
        QVERIFY(!m_defaults.boolean(minutes));
        QVERIFY(!m_defaults.data(bookmark));
        QVERIFY2(!QFile::exists(file()), "reading writes nothing");

        m_defaults.setInteger(minutes, 0);
        QVERIFY(m_defaults.contains(minutes));
        QCOMPARE(m_defaults.integer(minutes), 0);
    }

    void valuesKeepTheirTypes()
    {
        const QByteArray bytes("\0\xff\n bookmark", 12);
        m_defaults.setInteger(minutes, std::numeric_limits<qint64>::max());
        m_defaults.setBoolean(QStringLiteral("autoCopyToClipboard"), true);
        m_defaults.setData(bookmark, bytes);
        m_defaults.setData(QStringLiteral("empty"), QByteArray());

        QCOMPARE(m_defaults.integer(minutes), std::numeric_limits<qint64>::max());
        QVERIFY(m_defaults.boolean(QStringLiteral("autoCopyToClipboard")));
        QCOMPARE(m_defaults.data(bookmark), bytes);
        QVERIFY(m_defaults.data(QStringLiteral("empty")).has_value());

        const QJsonObject stored = QJsonDocument::fromJson(contents(file())).object();
        QCOMPARE(stored.value(minutes).toInteger(), std::numeric_limits<qint64>::max());
        QCOMPARE(stored.value(QStringLiteral("autoCopyToClipboard")), QJsonValue(true));
        QCOMPARE(
            stored.value(bookmark),
            QJsonValue(QJsonObject{{QStringLiteral("data"), QString::fromLatin1(bytes.toBase64())}}));
    }

    void aValueOfAnotherTypeCountsAsNone()
    {
        writeFile(
            R"({"timeframeInMinutes": "5", "flag": 1, "DesktopFolderBookmark": {"data": "no base 64!"}})");
        QVERIFY(m_defaults.contains(minutes));
        QCOMPARE(m_defaults.integer(minutes), 0);
        QVERIFY(!m_defaults.boolean(QStringLiteral("flag")));
        QVERIFY(!m_defaults.data(bookmark));
    }

    void keysOfANewerVersionSurviveAChange()
    {
        const QByteArray newer =
            R"({"future": {"data": "AA==", "list": [1, 2.5, null, "x"]}, "a/b": "text", "n": null})";
        writeFile(newer);
        m_defaults.setInteger(minutes, 30);

        QJsonObject stored = QJsonDocument::fromJson(contents(file())).object();
        QCOMPARE(stored.take(minutes), QJsonValue(30));
        QCOMPARE(stored, QJsonDocument::fromJson(newer).object());
    }

    void aChangeByAnotherProgramIsSeen()
    {
        m_defaults.setInteger(minutes, 5);
        writeFile(R"({"timeframeInMinutes": 60, "longer": true})");
        QCOMPARE(m_defaults.integer(minutes), 60);
    }

    void aDamagedFileIsSetAside_data()
    {
        QTest::addColumn<QByteArray>("damaged");
        QTest::newRow("cut short") << QByteArray(R"({"timeframeInMinutes": 3)");
        QTest::newRow("no object") << QByteArray("[1, 2]");
        QTest::newRow("not text") << QByteArray("\xff\xfe\0\1", 4);
    }

    void aDamagedFileIsSetAside()
    {
        QFETCH(const QByteArray, damaged);
        writeFile(damaged);
        {
            const CapturedOutput output;
            QVERIFY(!m_defaults.contains(minutes));
            QVERIFY(!m_defaults.contains(bookmark));
            const QString line = QStringLiteral("Preferences are damaged and were set aside as ");
            QCOMPARE(output.lines(), QStringList{line + file() + QStringLiteral(".damaged")});
        }
        QCOMPARE(contents(file() + QStringLiteral(".damaged")), damaged);
        QVERIFY(!QFile::exists(file()));

        m_defaults.setInteger(minutes, 10);
        QCOMPARE(m_defaults.integer(minutes), 10);
    }

    void aSecondDamagedFileDoesNotReplaceTheFirst()
    {
        writeFile("first");
        QVERIFY(!m_defaults.contains(minutes));
        writeFile("the second one");
        m_defaults.setInteger(minutes, 1);

        QCOMPARE(contents(file() + QStringLiteral(".damaged")), QByteArray("first"));
        QCOMPARE(contents(file() + QStringLiteral(".damaged-2")), QByteArray("the second one"));
        QCOMPARE(m_defaults.integer(minutes), 1);
    }

    void aFolderThatCannotBeWrittenLosesNothing()
    {
        if (::geteuid() == 0) {
            QSKIP("Nothing is unwritable for root");
        }
        m_defaults.setInteger(minutes, 5);
        const QByteArray before = contents(file());
        QCOMPARE(::chmod(QFile::encodeName(folder()).constData(), 0500), 0);
        {
            const CapturedOutput output;
            m_defaults.setInteger(minutes, 60);
            QCOMPARE(output.lines(), QStringList{QStringLiteral("Failed to write preferences to ") + file()});
        }
        QCOMPARE(contents(file()), before);
        QCOMPARE(m_defaults.integer(minutes), 60);
        QCOMPARE(::chmod(QFile::encodeName(folder()).constData(), 0700), 0);
        m_defaults.setBoolean(QStringLiteral("autoCopyToClipboard"), true);
        const QJsonObject stored = QJsonDocument::fromJson(contents(file())).object();
        QCOMPARE(stored.value(minutes), QJsonValue(60));
        QCOMPARE(stored.value(QStringLiteral("autoCopyToClipboard")), QJsonValue(true));
    }

    void aFifoInTheFilesPlaceIsNotWaitedFor()
    {
        QVERIFY(QDir().mkpath(folder()));
        QCOMPARE(::mkfifo(QFile::encodeName(file()).constData(), 0600), 0);
        QVERIFY(!m_defaults.contains(minutes));
        const CapturedOutput output;
        m_defaults.setInteger(minutes, 5);
        QCOMPARE(output.lines(), QStringList{QStringLiteral("Failed to write preferences to ") + file()});
        QVERIFY(!m_defaults.contains(minutes));
    }

    void threadsReadAndWriteAtOnce()
    {
        constexpr int rounds = 20;
        const auto write = [this](const QString &key) {
            for (int round = 1; round <= rounds; ++round) {
                m_defaults.setInteger(key, round);
            }
        };
        m_defaults.setData(bookmark, QByteArrayLiteral("folder"));
        bool wasAlwaysThere = true;
        std::thread first(write, QStringLiteral("first"));
        std::thread second(write, QStringLiteral("second"));
        for (int round = 0; round < rounds * 10; ++round) {
            wasAlwaysThere = wasAlwaysThere && m_defaults.data(bookmark) == QByteArrayLiteral("folder");
        }
        first.join();
        second.join();
        QVERIFY(wasAlwaysThere);
        QCOMPARE(m_defaults.integer(QStringLiteral("first")), rounds);
        QCOMPARE(m_defaults.integer(QStringLiteral("second")), rounds);
    }
};

QTEST_GUILESS_MAIN(UserDefaultsTest)
#include "UserDefaultsTest.moc"
