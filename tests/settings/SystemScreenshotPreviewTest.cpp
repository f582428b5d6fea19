#include "SystemScreenshotPreview.h"

#include "TemporaryHome.h"
#include "files.h"

#include <QFile>
#include <QJsonDocument>
#include <QJsonObject>
#include <QTest>

#include <optional>

namespace {

const QString screenshotTool = QStringLiteral("com.apple.screencapture");
const QString showThumbnail = QStringLiteral("show-thumbnail");

QByteArray contents(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

} // namespace

/// The switch as the user sees it, with the screenshot tool's setting behind it.
class SystemScreenshotPreviewTest final : public QObject {
    Q_OBJECT

private:
    [[nodiscard]] QString spectaclerc() const
    {
        return m_home->path() + QStringLiteral("/.config/spectaclerc");
    }

    [[nodiscard]] QString store() const
    {
        return m_home->path() + QStringLiteral("/.config/Deskbroom/AppPreferences.json");
    }

    void writeStored(const QJsonValue &value) const
    {
        files::makeFolder(m_home->path() + QStringLiteral("/.config/Deskbroom"));
        const QJsonObject values{{screenshotTool, QJsonObject{{showThumbnail, value}}}};
        files::write(store(), QJsonDocument(values).toJson());
    }

    [[nodiscard]] QJsonValue stored() const
    {
        return QJsonDocument::fromJson(contents(store()))
            .object()
            .value(screenshotTool)
            .toObject()
            .value(showThumbnail);
    }

    std::optional<TemporaryHome> m_home;

private Q_SLOTS:

    void init()
    {
        m_home.emplace();
        qputenv("XDG_CONFIG_DIRS", m_home->path().toUtf8());
    }

    void isOffWhileNothingIsSet()
    {
        for (const char *const desktop : {"GNOME", "KDE"}) {
            qputenv("XDG_CURRENT_DESKTOP", desktop);
            QVERIFY(!SystemScreenshotPreview::isDisabled());
        }
        QVERIFY2(!files::exists(store()) && !files::exists(spectaclerc()), "Reading writes nothing");
    }

    void turningItOnStoresFalseAndOffAgainTrue()
    {
        qputenv("XDG_CURRENT_DESKTOP", "GNOME");
        SystemScreenshotPreview::setDisabled(true);
        QCOMPARE(stored(), QJsonValue(false));
        QVERIFY(SystemScreenshotPreview::isDisabled());
        SystemScreenshotPreview::setDisabled(false);
        QCOMPARE(stored(), QJsonValue(true));
        QVERIFY(!SystemScreenshotPreview::isDisabled());
    }

    void turningItOnHasSpectacleSaveByItself()
    {
        qputenv("XDG_CURRENT_DESKTOP", "KDE");
        SystemScreenshotPreview::setDisabled(true);
        QCOMPARE(contents(spectaclerc()), QByteArray("[General]\nautoSaveImage=true\n"));
        QVERIFY(SystemScreenshotPreview::isDisabled());
        SystemScreenshotPreview::setDisabled(false);
        QCOMPARE(contents(spectaclerc()), QByteArray("[General]\nautoSaveImage=false\n"));
        QVERIFY(!SystemScreenshotPreview::isDisabled());
    }

    void turningItOffWhereNothingIsSetStoresTrue()
    {
        qputenv("XDG_CURRENT_DESKTOP", "KDE");
        SystemScreenshotPreview::setDisabled(false);
        QCOMPARE(contents(spectaclerc()), QByteArray("[General]\nautoSaveImage=false\n"));
        qputenv("XDG_CURRENT_DESKTOP", "GNOME");
        SystemScreenshotPreview::setDisabled(false);
        QCOMPARE(stored(), QJsonValue(true));
    }

    void isOffWithWhatIsNoBoolean_data()
    {
        QTest::addColumn<QJsonValue>("value");
        QTest::newRow("text") << QJsonValue(QStringLiteral("false"));
        QTest::newRow("zero") << QJsonValue(0);
        QTest::newRow("null") << QJsonValue(QJsonValue::Null);
        QTest::newRow("object") << QJsonValue(QJsonObject());
    }

    void isOffWithWhatIsNoBoolean()
    {
        QFETCH(const QJsonValue, value);
        qputenv("XDG_CURRENT_DESKTOP", "GNOME");
        writeStored(value);
        QVERIFY(!SystemScreenshotPreview::isDisabled());
    }

    void isOffWithTextInSpectaclesSetting()
    {
        qputenv("XDG_CURRENT_DESKTOP", "KDE");
        files::write(spectaclerc(), "[General]\nautoSaveImage=sometimes\n");
        QVERIFY(!SystemScreenshotPreview::isDisabled());
    }

    void followsWhatAnotherProgramSets()
    {
        qputenv("XDG_CURRENT_DESKTOP", "GNOME");
        writeStored(false);
        QVERIFY(SystemScreenshotPreview::isDisabled());
        writeStored(true);
        QVERIFY(!SystemScreenshotPreview::isDisabled());

        qputenv("XDG_CURRENT_DESKTOP", "KDE");
        files::write(spectaclerc(), "[General]\nautoSaveImage=true\n");
        QVERIFY(SystemScreenshotPreview::isDisabled());
        files::write(spectaclerc(), "[General]\nautoSaveImage=false\n");
        QVERIFY(!SystemScreenshotPreview::isDisabled());
    }

    void staysAsItIsWhereItCannotBeChanged()
    {
        qputenv("XDG_CURRENT_DESKTOP", "KDE");
        files::write(spectaclerc(), "[General][$i]\nautoSaveImage=false\n");
        SystemScreenshotPreview::setDisabled(true);
        QVERIFY(!SystemScreenshotPreview::isDisabled());
    }
};

QTEST_GUILESS_MAIN(SystemScreenshotPreviewTest)
#include "SystemScreenshotPreviewTest.moc"
