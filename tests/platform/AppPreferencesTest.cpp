#include "AppPreferences.h"

#include "CapturedOutput.h"
#include "TemporaryHome.h"
#include "files.h"

#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QTest>

#include <sys/stat.h>

#include <optional>

namespace {

const QString screenshotTool = QStringLiteral("com.apple.screencapture");
const QString showThumbnail = QStringLiteral("show-thumbnail");

QByteArray contents(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

std::optional<QJsonValue> thumbnailIsShown()
{
    return AppPreferences::copyAppValue(showThumbnail, screenshotTool);
}

void showThumbnails(const QJsonValue &value)
{
    AppPreferences::setValue(showThumbnail, value, screenshotTool);
}

} // namespace

/// Settings of other programs: what they mean in the running session, and where the rest is kept.
class AppPreferencesTest final : public QObject {
    Q_OBJECT

private:
    [[nodiscard]] QString configuration() const { return m_home->path() + QStringLiteral("/.config"); }

    [[nodiscard]] QString spectaclerc() const { return configuration() + QStringLiteral("/spectaclerc"); }

    [[nodiscard]] QString store() const
    {
        return configuration() + QStringLiteral("/Deskbroom/AppPreferences.json");
    }

    /// Folders of the system's settings, the more important one first.
    [[nodiscard]] QString systemFile(int index) const
    {
        return m_home->path() + QStringLiteral("/etc/%1/spectaclerc").arg(index);
    }

    void verifyRefused() const
    {
        const QByteArray before = contents(spectaclerc());
        const auto value = thumbnailIsShown();
        const CapturedOutput output;
        showThumbnails(false);
        QCOMPARE(output.lines().size(), 1);
        QVERIFY(output.lines().constFirst().startsWith(
            QStringLiteral("Failed to write Spectacle's preferences: Error Domain=")));
        QCOMPARE(contents(spectaclerc()), before);
        QCOMPARE(thumbnailIsShown(), value);
    }

    std::optional<TemporaryHome> m_home;

private Q_SLOTS:

    void init()
    {
        m_home.emplace();
        QByteArrayList folders;
        for (const int index : {1, 2}) {
            const QString folder = m_home->path() + QStringLiteral("/etc/%1").arg(index);
            files::makeFolder(folder);
            folders.append(folder.toUtf8());
        }
        qputenv("XDG_CONFIG_DIRS", folders.join(':'));
        qputenv("XDG_CURRENT_DESKTOP", "KDE");
    }

    void readsSpectaclesSettingTheOtherWayRound_data()
    {
        QTest::addColumn<QByteArray>("contents");
        QTest::addColumn<std::optional<QJsonValue>>("expected");
        const auto row = [](const char *name, const QByteArray &value,
                            const std::optional<QJsonValue> &expected) {
            QTest::newRow(name) << QByteArray("[General]\nautoSaveImage=" + value + '\n') << expected;
        };
        for (const char *const truth : {"true", "on", "yes", "1", "TRUE", "On", " true "}) {
            row(truth, truth, QJsonValue(false));
        }
        for (const char *const untruth : {"false", "off", "no", "0", "False", "NO"}) {
            row(untruth, untruth, QJsonValue(true));
        }
        row("text", "sometimes", QJsonValue(QStringLiteral("sometimes")));
        row("another number", "2", QJsonValue(QStringLiteral("2")));
        row("empty", "", QJsonValue(QString()));
        QTest::newRow("no entry") << QByteArray("[General]\nclipboardGroup=a\n")
                                  << std::optional<QJsonValue>();
        QTest::newRow("another group")
            << QByteArray("[Save]\nautoSaveImage=true\n") << std::optional<QJsonValue>();
        QTest::newRow("deleted") << QByteArray("[General]\nautoSaveImage=true\nautoSaveImage[$d]\n")
                                 << std::optional<QJsonValue>();
        QTest::newRow("not text") << QByteArray("\0\xff[General]\nautoSaveImage=", 25)
                                  << std::optional<QJsonValue>();
    }

    void readsSpectaclesSettingTheOtherWayRound()
    {
        QFETCH(const QByteArray, contents);
        QFETCH(const std::optional<QJsonValue>, expected);
        QVERIFY(!thumbnailIsShown());
        files::write(spectaclerc(), contents);
        QCOMPARE(thumbnailIsShown(), expected);
    }

    void changesSpectaclesSettingAlone()
    {
        files::write(spectaclerc(), "[General]\nclipboardGroup=a\n\n[GuiConfig]\nx=1\n");
        showThumbnails(false);
        AppPreferences::appSynchronize(screenshotTool);
        QCOMPARE(
            contents(spectaclerc()),
            QByteArray("[General]\nclipboardGroup=a\nautoSaveImage=true\n\n[GuiConfig]\nx=1\n"));
        QCOMPARE(thumbnailIsShown(), QJsonValue(false));
        showThumbnails(true);
        QCOMPARE(
            contents(spectaclerc()),
            QByteArray("[General]\nclipboardGroup=a\nautoSaveImage=false\n\n[GuiConfig]\nx=1\n"));
        QCOMPARE(thumbnailIsShown(), QJsonValue(true));
        QVERIFY(!files::exists(store()));
    }

    void knowsPlasmaAmongTheDesktopsNames_data()
    {
        QTest::addColumn<QByteArray>("desktop");
        QTest::addColumn<bool>("isPlasma");
        QTest::newRow("Plasma") << QByteArray("KDE") << true;
        QTest::newRow("spelled otherwise") << QByteArray("kde") << true;
        QTest::newRow("made after Plasma") << QByteArray("Own:KDE") << true;
        QTest::newRow("GNOME") << QByteArray("ubuntu:GNOME") << false;
        QTest::newRow("longer name") << QByteArray("KDE2") << false;
        QTest::newRow("none") << QByteArray() << false;
    }

    void knowsPlasmaAmongTheDesktopsNames()
    {
        QFETCH(const QByteArray, desktop);
        QFETCH(const bool, isPlasma);
        qputenv("XDG_CURRENT_DESKTOP", desktop);
        showThumbnails(false);
        QCOMPARE(files::exists(spectaclerc()), isPlasma);
        QCOMPARE(files::exists(store()), !isPlasma);
        QCOMPARE(thumbnailIsShown(), QJsonValue(false));
    }

    void theSystemsSettingsCountWhereTheUserHasNone()
    {
        files::write(systemFile(2), "[General]\nautoSaveImage=true\n");
        QCOMPARE(thumbnailIsShown(), QJsonValue(false));
        files::write(systemFile(1), "[General]\nautoSaveImage=false\n");
        QCOMPARE(thumbnailIsShown(), QJsonValue(true));
        files::write(spectaclerc(), "[General]\nautoSaveImage=true\n");
        QCOMPARE(thumbnailIsShown(), QJsonValue(false));
        files::write(spectaclerc(), "[General]\nautoSaveImage[$d]\n");
        QVERIFY(!thumbnailIsShown());

        const QByteArray before = contents(systemFile(1));
        showThumbnails(false);
        QCOMPARE(contents(spectaclerc()), QByteArray("[General]\nautoSaveImage=true\n"));
        QCOMPARE(contents(systemFile(1)), before);
    }

    void whatTheSystemForbidsToChangeHolds_data()
    {
        QTest::addColumn<QByteArray>("systemSettings");
        QTest::newRow("entry") << QByteArray("[General]\nautoSaveImage[$i]=false\n");
        QTest::newRow("group") << QByteArray("[General][$i]\nautoSaveImage=false\n");
        QTest::newRow("file") << QByteArray("[$i]\n[General]\nautoSaveImage=false\n");
    }

    void whatTheSystemForbidsToChangeHolds()
    {
        QFETCH(const QByteArray, systemSettings);
        files::write(systemFile(1), systemSettings);
        QCOMPARE(thumbnailIsShown(), QJsonValue(true));
        verifyRefused();
        QVERIFY(!files::exists(spectaclerc()));
        files::write(spectaclerc(), "[General]\nautoSaveImage=true\n");
        QCOMPARE(thumbnailIsShown(), QJsonValue(true));
        verifyRefused();
    }

    void whatCannotBeChangedIsSaidInOneLine()
    {
        files::write(spectaclerc(), "[General]\nautoSaveImage[$i]=false\n");
        verifyRefused();
        files::remove(spectaclerc());
        files::makeFolder(spectaclerc());
        verifyRefused();
        files::remove(spectaclerc());
        QCOMPARE(::mkfifo(QFile::encodeName(spectaclerc()).constData(), 0600), 0);
        const CapturedOutput output;
        showThumbnails(true);
        QCOMPARE(output.lines().size(), 1);
        QVERIFY(!thumbnailIsShown());
    }

    void spectacleTakesNoOtherType()
    {
        files::write(spectaclerc(), "[General]\nautoSaveImage=true\n");
        const CapturedOutput output;
        showThumbnails(QStringLiteral("no"));
        QCOMPARE(
            output.lines(),
            QStringList{QStringLiteral("Failed to write Spectacle's preferences: not a boolean")});
        QCOMPARE(contents(spectaclerc()), QByteArray("[General]\nautoSaveImage=true\n"));
    }

    void everythingElseKeepsItsType()
    {
        const QString application = QStringLiteral("org.example.Program");
        const QJsonObject values{
            {QStringLiteral("boolean"), false},
            {QStringLiteral("number"), 0},
            {QStringLiteral("text"), QStringLiteral("false")},
            {QStringLiteral("nothing"), QJsonValue::Null},
            {QStringLiteral("a/b"), QJsonArray{1, 2.5}},
            {QStringLiteral("data"), QStringLiteral("AAAA")},
        };
        for (auto value = values.begin(); value != values.end(); ++value) {
            QVERIFY(!AppPreferences::copyAppValue(value.key(), application));
            AppPreferences::setValue(value.key(), value.value(), application);
            QCOMPARE(AppPreferences::copyAppValue(value.key(), application), QJsonValue(value.value()));
        }
        QVERIFY(!AppPreferences::copyAppValue(QStringLiteral("boolean"), screenshotTool));
        QCOMPARE(QJsonDocument::fromJson(contents(store())).object(), (QJsonObject{{application, values}}));
        QVERIFY(!files::exists(spectaclerc()));
    }

    void otherKeysOfTheScreenshotToolAreOurs()
    {
        const QString location = QStringLiteral("location");
        AppPreferences::setValue(location, QStringLiteral("/a"), screenshotTool);
        QCOMPARE(AppPreferences::copyAppValue(location, screenshotTool), QJsonValue(QStringLiteral("/a")));
        AppPreferences::setValue(showThumbnail, true, QStringLiteral("org.example.Program"));
        QVERIFY(!thumbnailIsShown());
        QVERIFY(!files::exists(spectaclerc()));
    }

    void whatOthersStoredThereSurvives()
    {
        qunsetenv("XDG_CURRENT_DESKTOP");
        const QByteArray before = R"({"com.apple.screencapture": {"a": [1]}, "other": 5})";
        files::makeFolder(configuration() + QStringLiteral("/Deskbroom"));
        files::write(store(), before);
        showThumbnails(true);
        QJsonObject expected = QJsonDocument::fromJson(before).object();
        expected.insert(
            screenshotTool, QJsonObject{{QStringLiteral("a"), QJsonArray{1}}, {showThumbnail, true}});
        QCOMPARE(QJsonDocument::fromJson(contents(store())).object(), expected);
    }

    void aDamagedStoreIsSetAside()
    {
        qunsetenv("XDG_CURRENT_DESKTOP");
        files::makeFolder(configuration() + QStringLiteral("/Deskbroom"));
        files::write(store(), "{");
        {
            const CapturedOutput output;
            QVERIFY(!thumbnailIsShown());
            QCOMPARE(
                output.lines(), QStringList{QString(
                                    QStringLiteral("Preferences are damaged and were set aside as ") +
                                    store() + QStringLiteral(".damaged"))});
        }
        showThumbnails(false);
        QCOMPARE(thumbnailIsShown(), QJsonValue(false));
        QCOMPARE(contents(store() + QStringLiteral(".damaged")), QByteArray("{"));
    }

    void aFifoInTheStoresPlaceIsNotWaitedFor()
    {
        qunsetenv("XDG_CURRENT_DESKTOP");
        files::makeFolder(configuration() + QStringLiteral("/Deskbroom"));
        QCOMPARE(::mkfifo(QFile::encodeName(store()).constData(), 0600), 0);
        QVERIFY(!thumbnailIsShown());
        const CapturedOutput output;
        showThumbnails(false);
        QCOMPARE(output.lines(), QStringList{QStringLiteral("Failed to write preferences to ") + store()});
        QVERIFY(!thumbnailIsShown());
    }
};

QTEST_GUILESS_MAIN(AppPreferencesTest)
#include "AppPreferencesTest.moc"
