#include "GeneralSettingsFixture.h"
#include "PopUpButton.h"
#include "Switch.h"

#include <QAccessible>

/// What the General page's switches change: the clipboard's in the program, the preview's in the screenshot
/// tool.
class GeneralSettingsSwitchesTest final : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void init();
    void cleanup();

    void theClipboardSwitchIsPublishedAndStored();
    void theClipboardSwitchFollowsTheManager();
    void aChangeOfTheFileByAnotherProgramShowsAtTheNextLaunch();
    void thePreviewSwitchWritesTheToolsSetting_data();
    void thePreviewSwitchWritesTheToolsSetting();
    void aRefusedPreviewSwitchGoesBack();
    void thePreviewSwitchFollowsOtherProgramsWhenTheWindowIsActivated();
    void theToolTipSaysWhereThePreviewSwitchChangesNothing_data();
    void theToolTipSaysWhereThePreviewSwitchChangesNothing();

private:
    std::unique_ptr<GeneralSettingsFixture> m_settings;
};

void GeneralSettingsSwitchesTest::initTestCase()
{
    m_settings = std::make_unique<GeneralSettingsFixture>();
}

void GeneralSettingsSwitchesTest::init()
{
    m_settings->launch();
}

void GeneralSettingsSwitchesTest::cleanup()
{
    m_settings->end();
}

void GeneralSettingsSwitchesTest::theClipboardSwitchIsPublishedAndStored()
{
    const auto page = m_settings->shown();
    auto *const clipboard = control<Switch>(*page, clipboardTitle);
    for (const bool isOn : {true, false}) {
        QTest::keyClick(clipboard, Qt::Key_Space);
        QCOMPARE(clipboard->isOn(), isOn);
        QCOMPARE(m_settings->delegate().screenshotManager()->autoCopyToClipboard(), isOn);
        QCOMPARE(UserDefaults::standard().boolean(preferences::autoCopyToClipboard), isOn);
        QVERIFY(UserDefaults::standard().contains(preferences::autoCopyToClipboard));
    }
}

void GeneralSettingsSwitchesTest::theClipboardSwitchFollowsTheManager()
{
    const auto page = m_settings->shown();
    m_settings->delegate().screenshotManager()->setAutoCopyToClipboard(true);
    QTRY_VERIFY(control<Switch>(*page, clipboardTitle)->isOn());
}

void GeneralSettingsSwitchesTest::aChangeOfTheFileByAnotherProgramShowsAtTheNextLaunch()
{
    auto page = m_settings->shown();
    UserDefaults::standard().setBoolean(preferences::autoCopyToClipboard, true);
    m_settings->delegate().updateTimeframe(10);
    QTRY_COMPARE(control<PopUpButton>(*page, delayTitle)->text(), QStringLiteral("10 minutes"));
    QVERIFY(!control<Switch>(*page, clipboardTitle)->isOn());
    page.reset();
    m_settings->launch();
    QVERIFY(control<Switch>(*m_settings->shown(), clipboardTitle)->isOn());
}

void GeneralSettingsSwitchesTest::thePreviewSwitchWritesTheToolsSetting_data()
{
    QTest::addColumn<QByteArray>("desktop");
    QTest::addColumn<QString>("file");
    QTest::addColumn<QByteArray>("whenDisabled");
    QTest::addColumn<QByteArray>("whenEnabled");
    QTest::newRow("Plasma") << QByteArray("KDE") << QStringLiteral("spectaclerc")
                            << QByteArray("autoSaveImage=true") << QByteArray("autoSaveImage=false");
    QTest::newRow("another desktop") << QByteArray("XFCE") << QStringLiteral("Deskbroom/AppPreferences.json")
                                     << QByteArray("\"show-thumbnail\": false")
                                     << QByteArray("\"show-thumbnail\": true");
}

void GeneralSettingsSwitchesTest::thePreviewSwitchWritesTheToolsSetting()
{
    QFETCH(const QByteArray, desktop);
    QFETCH(const QString, file);
    QFETCH(const QByteArray, whenDisabled);
    QFETCH(const QByteArray, whenEnabled);
    qputenv("XDG_CURRENT_DESKTOP", desktop);
    const QString path = m_settings->home().path() + QStringLiteral("/.config/") + file;
    QFile::remove(path);
    const auto contains = [&path](const QByteArray &text) {
        QFile stored(path);
        return stored.open(QIODevice::ReadOnly) && stored.readAll().contains(text);
    };
    const auto page = m_settings->shown();
    auto *const preview = control<Switch>(*page, previewTitle);
    // Unset, it is off.
    QVERIFY(!preview->isOn());
    QTest::keyClick(preview, Qt::Key_Space);
    QVERIFY(preview->isOn());
    QVERIFY(contains(whenDisabled));
    // Off again, it is written, not unset.
    QTest::keyClick(preview, Qt::Key_Space);
    QVERIFY(!preview->isOn());
    QVERIFY(contains(whenEnabled));
}

void GeneralSettingsSwitchesTest::aRefusedPreviewSwitchGoesBack()
{
    qputenv("XDG_CURRENT_DESKTOP", "KDE");
    const QString path = m_settings->home().path() + QStringLiteral("/.config/spectaclerc");
    files::write(path, "[General]\nautoSaveImage=false\n");
    QVERIFY(QFile::setPermissions(path, QFileDevice::ReadOwner));
    const CapturedOutput output;
    const auto page = m_settings->shown();
    auto *const preview = control<Switch>(*page, previewTitle);
    QTest::keyClick(preview, Qt::Key_Space);
    QVERIFY(!preview->isOn());
    QVERIFY(!preview->isChecked());
    QCOMPARE(output.lines().filter(QStringLiteral("Failed to write Spectacle's preferences: ")).size(), 1);
    files::remove(path);
}

void GeneralSettingsSwitchesTest::thePreviewSwitchFollowsOtherProgramsWhenTheWindowIsActivated()
{
    qputenv("XDG_CURRENT_DESKTOP", "KDE");
    const QString path = m_settings->home().path() + QStringLiteral("/.config/spectaclerc");
    QFile::remove(path);
    const auto page = m_settings->shown();
    QVERIFY(!control<Switch>(*page, previewTitle)->isOn());
    QWidget other;
    other.show();
    other.activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(&other));
    files::write(path, "[General]\nautoSaveImage=true\n");
    page->activateWindow();
    QTRY_VERIFY(control<Switch>(*page, previewTitle)->isOn());
    files::remove(path);
}

void GeneralSettingsSwitchesTest::theToolTipSaysWhereThePreviewSwitchChangesNothing_data()
{
    QTest::addColumn<QByteArray>("desktop");
    QTest::addColumn<QString>("words");
    QTest::newRow("saves at once") << QByteArray("GNOME") << QStringLiteral("never holds a screenshot back");
    QTest::newRow("asks") << QByteArray("XFCE") << QStringLiteral("asks before it saves");
    QTest::newRow("holds back") << QByteArray("KDE") << QString();
    QTest::newRow("unknown") << QByteArray() << QString();
}

void GeneralSettingsSwitchesTest::theToolTipSaysWhereThePreviewSwitchChangesNothing()
{
    QFETCH(const QByteArray, desktop);
    QFETCH(const QString, words);
    qputenv("XDG_CURRENT_DESKTOP", desktop);
    const auto page = m_settings->shown();
    auto *const preview = control<Switch>(*page, previewTitle);
    const QString toolTip = preview->toolTip();
    QCOMPARE(toolTip.isEmpty(), words.isEmpty());
    QVERIFY(toolTip.contains(words));
    // Assistive programs say it after what everybody reads.
    const QString description =
        QAccessible::queryAccessibleInterface(preview)->text(QAccessible::Description);
    const QString shownText = QStringLiteral("the instant they're taken.");
    QVERIFY2(
        description.endsWith(words.isEmpty() ? shownText : shownText + u' ' + toolTip),
        qPrintable(description));
    QVERIFY(description.startsWith(QStringLiteral("macOS delays saving")));
}

QTEST_MAIN(GeneralSettingsSwitchesTest)
#include "GeneralSettingsSwitchesTest.moc"
