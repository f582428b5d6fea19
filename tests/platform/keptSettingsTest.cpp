#include "keptSettings.h"

#include "DesktopSession.h"
#include "TemporaryHome.h"
#include "files.h"

#include <QFile>
#include <QFileInfo>
#include <QSemaphore>
#include <QTest>
#include <QThread>

#include <array>
#include <memory>
#include <optional>
#include <vector>

namespace {

const QString schema = QStringLiteral("org.deskbroom.test");
const QString text = QStringLiteral("text");
const QString flag = QStringLiteral("flag");

constexpr char schemas[] = R"(
  <schema id="org.deskbroom.test" path="/org/deskbroom/test/">
    <key name="text" type="s"><default>'default'</default></key>
    <key name="flag" type="b"><default>false</default></key>
  </schema>
)";

void set(const QString &key, const QString &value)
{
    PrivateSettings::set({.schema = schema, .key = key, .value = value});
}

/// A `gsettings` that counts the questions and leaves the rest to the real one.
class CountingTool final {
public:
    explicit CountingTool(const TemporaryHome &home)
        : m_counts(home.path() + QStringLiteral("/counts")),
          m_path(qgetenv("PATH"))
    {
        const QString folder = home.path() + QStringLiteral("/bin");
        const QString tool = folder + QStringLiteral("/gsettings");
        files::makeFolder(folder);
        files::write(
            tool, "#!/bin/sh\necho \"$1\" >> '" + m_counts.toUtf8() + "'\nPATH='" + m_path +
                      "' exec gsettings \"$@\"\n");
        QFile::setPermissions(tool, QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
        qputenv("PATH", folder.toUtf8() + ':' + m_path);
    }

    Q_DISABLE_COPY_MOVE(CountingTool)

    ~CountingTool() { qputenv("PATH", m_path); }

    [[nodiscard]] qsizetype questions() const
    {
        QFile file(m_counts);
        return file.open(QIODevice::ReadOnly) ? file.readAll().count("get") : 0;
    }

private:
    QString m_counts;
    QByteArray m_path;
};

} // namespace

/// Answers of GSettings that are kept until the database changes.
class keptSettingsTest final : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void init();
    void givesWhatIsSet();
    void asksAgainOnlyWhenTheAnswerMayHaveChanged();
    void keepsThatThereIsNoAnswer();
    void keepsEachAnswerByItself();
    void answersSeveralThreads();

private:
    std::optional<PrivateSettings> m_settings;
    std::unique_ptr<TemporaryHome> m_home;
};

void keptSettingsTest::initTestCase()
{
    m_settings.emplace(schemas);
}

void keptSettingsTest::init()
{
    m_home = std::make_unique<TemporaryHome>();
}

void keptSettingsTest::givesWhatIsSet()
{
    QCOMPARE(keptSettings::string(schema, text), QStringLiteral("default"));
    QCOMPARE(keptSettings::boolean(schema, flag), false);
    set(text, QStringLiteral("'/Captures d\u2019écran'"));
    set(flag, QStringLiteral("true"));
    QCOMPARE(keptSettings::string(schema, text), QStringLiteral("/Captures d\u2019écran"));
    QCOMPARE(keptSettings::boolean(schema, flag), true);
}

void keptSettingsTest::asksAgainOnlyWhenTheAnswerMayHaveChanged()
{
    const CountingTool tool(*m_home);
    for (int i = 0; i < 5; ++i) {
        QCOMPARE(keptSettings::string(schema, text), QStringLiteral("default"));
    }
    QCOMPARE(tool.questions(), 1);
    qsizetype expected = 1;
    for (const QString &value : {QStringLiteral("one"), QStringLiteral("two")}) {
        set(text, value);
        QCOMPARE(keptSettings::string(schema, text), value);
        QCOMPARE(keptSettings::string(schema, text), value);
        QCOMPARE(tool.questions(), ++expected);
    }
}

void keptSettingsTest::keepsThatThereIsNoAnswer()
{
    const CountingTool tool(*m_home);
    const QString missing = QStringLiteral("org.deskbroom.missing");
    QVERIFY(!keptSettings::string(missing, text));
    QVERIFY(!keptSettings::string(missing, text));
    QCOMPARE(tool.questions(), 1);
}

void keptSettingsTest::keepsEachAnswerByItself()
{
    const CountingTool tool(*m_home);
    for (int i = 0; i < 3; ++i) {
        QCOMPARE(keptSettings::string(schema, text), QStringLiteral("default"));
        QCOMPARE(keptSettings::boolean(schema, flag), false);
    }
    QCOMPARE(tool.questions(), 2);
}

void keptSettingsTest::answersSeveralThreads()
{
    set(text, QStringLiteral("'set'"));
    constexpr int count = 4;
    constexpr int questions = 50;
    QSemaphore isReady;
    std::array<QStringList, count> answers;
    std::vector<std::unique_ptr<QThread>> threads;
    for (QStringList &own : answers) {
        threads.emplace_back(QThread::create([&isReady, &own] {
            isReady.acquire();
            for (int i = 0; i < questions; ++i) {
                own.append(keptSettings::string(schema, text).value_or(QString()));
            }
        }));
        threads.back()->start();
    }
    isReady.release(count);
    for (const auto &thread : threads) {
        QVERIFY(thread->wait());
    }
    for (const QStringList &own : answers) {
        QCOMPARE(own.count(QStringLiteral("set")), questions);
    }
}

QTEST_GUILESS_MAIN(keptSettingsTest)
#include "keptSettingsTest.moc"
