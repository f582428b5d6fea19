#include "AppDelegateFixture.h"

#include "FileAccessManager.h"
#include "MenuBarManager.h"
#include "NotificationCenter.h"
#include "NotificationManager.h"
#include "PopUpMenu.h"
#include "ScreenshotManager.h"
#include "UserDefaults.h"
#include "Workspace.h"

#include <QLabel>
#include <QScreen>
#include <QSignalSpy>

#include <algorithm>
#include <limits>

/// How the program launches, what it takes from the preferences, its windows and its menus.
class AppDelegateTest final : public AppDelegateFixture {
    Q_OBJECT

private Q_SLOTS:

    void init() { begin(); }

    void cleanup() { end(); }

    void theFirstLaunchChecksTheDesktopAndHoldsIt();
    void terminatingGivesTheAccessBack();
    void linksToSettingsThatTheDesktopLacksOpenTheOwnOnes();
    void aPickedFolderThatIsNotTheDesktopIsCalledTheScreenshotFolder();
    void aFreshAccountHasFiveMinutesAndWatches();
    void theStoredDelayIsLoaded_data();
    void theStoredDelayIsLoaded();
    void aChangedDelayIsStoredAtOnce();
    void aChangeOfTheDelayIsAnnounced();
    void launchingWritesNoPreferenceButTheBookmark();
    void choosingTheSettingsTwiceOpensOneWindow();
    void closingEveryWindowLeavesTheProgramRunning();
    void aSmallScreenHasRoomForTheGallery();
    void withoutViewsTheWindowItemsAreDisabled();
    void theMenuHasItsItemsInOrder();
    void theTimeframeMenuChecksTheCurrentDelay_data();
    void theTimeframeMenuChecksTheCurrentDelay();
    void choosingATimeframeStoresIt();
};

void AppDelegateTest::theFirstLaunchChecksTheDesktopAndHoldsIt()
{
    launch();
    const QString desktop = m_home->desktop();
    QCOMPARE(
        m_output->lines(), (QStringList{
                               QStringLiteral("Requesting access to Desktop folder at: ") + desktop,
                               QStringLiteral("Desktop folder access granted"),
                               QStringLiteral("Successfully created bookmark for: ") + desktop,
                               QStringLiteral("Persistent Desktop access stopped"),
                               QStringLiteral("Persistent Desktop access started: ") + desktop,
                           }));
    QCOMPARE(m_delegate->fileAccessManager()->persistentAccessUrl(), QUrl::fromLocalFile(desktop));
}

void AppDelegateTest::terminatingGivesTheAccessBack()
{
    launch();
    m_delegate->applicationWillTerminate();
    QCOMPARE(m_output->lines().constLast(), QStringLiteral("Persistent Desktop access stopped"));
    QVERIFY(!m_delegate->fileAccessManager()->persistentAccessUrl());
}

void AppDelegateTest::linksToSettingsThatTheDesktopLacksOpenTheOwnOnes()
{
    launch(
        {.settings = [](SettingsApplicationDelegate &) { return std::make_unique<QLabel>(); },
         .gallery = {}});
    QVERIFY(Workspace::shared().open(NotificationManager::fileAccessSettings()));
    QTRY_VERIFY(m_delegate->settingsWindow() != nullptr);
    // A delegate that is gone opens nothing.
    m_delegate.reset();
    Workspace::shared().open(NotificationManager::fileAccessSettings());
    QCoreApplication::processEvents();
    const auto windows = QApplication::topLevelWidgets();
    QVERIFY(std::ranges::none_of(windows, &QWidget::isVisible));
}

void AppDelegateTest::aPickedFolderThatIsNotTheDesktopIsCalledTheScreenshotFolder()
{
    launch();
    const auto title = [] { return FileAccessManager::tr("Select Desktop Folder"); };
    QCOMPARE(title(), QStringLiteral("Select Desktop Folder"));
    QSignalSpy grants(&NotificationCenter::defaultCenter(), &NotificationCenter::posted);
    m_delegate->fileAccessManager()->handleSelectedFolder(QUrl::fromLocalFile(m_home->pictures()));
    QTRY_COMPARE_WITH_TIMEOUT(grants.size(), 1, patience);
    QTRY_COMPARE(title(), QStringLiteral("Select Screenshot Folder"));
    m_delegate->fileAccessManager()->handleSelectedFolder(QUrl::fromLocalFile(m_home->desktop()));
    QTRY_COMPARE_WITH_TIMEOUT(grants.size(), 2, patience);
    QTRY_COMPARE(title(), QStringLiteral("Select Desktop Folder"));
}

void AppDelegateTest::aFreshAccountHasFiveMinutesAndWatches()
{
    launch();
    QCOMPARE(m_delegate->timeframeInMinutes(), 5);
    QVERIFY(!m_delegate->screenshotManager()->autoCopyToClipboard());
    QVERIFY(m_delegate->screenshotWatcher() != nullptr);
}

void AppDelegateTest::theStoredDelayIsLoaded_data()
{
    QTest::addColumn<QByteArray>("stored");
    QTest::addColumn<qint64>("minutes");
    QTest::newRow("one of the choices") << QByteArray("30") << qint64(30);
    QTest::newRow("a stored 0 is kept") << QByteArray("0") << qint64(0);
    QTest::newRow("none of the choices") << QByteArray("7") << qint64(7);
    QTest::newRow("below zero") << QByteArray("-3") << qint64(-3);
    QTest::newRow("enormous") << QByteArray("9223372036854775807") << std::numeric_limits<qint64>::max();
    // Something is stored, so the default doesn't apply.
    QTest::newRow("text") << QByteArray("\"ten\"") << qint64(0);
    QTest::newRow("digits as text") << QByteArray("\"10\"") << qint64(0);
    QTest::newRow("a fraction") << QByteArray("2.5") << qint64(0);
}

void AppDelegateTest::theStoredDelayIsLoaded()
{
    QFETCH(const QByteArray, stored);
    const QString folder = m_home->path() + QStringLiteral("/.config/Deskbroom");
    files::makeFolder(folder);
    files::write(folder + QStringLiteral("/Deskbroom.json"), "{\"timeframeInMinutes\": " + stored + "}");
    launch();
    QTEST(m_delegate->timeframeInMinutes(), "minutes");
    // It stays as it was.
    QFile preferences(folder + QStringLiteral("/Deskbroom.json"));
    QVERIFY(preferences.open(QIODevice::ReadOnly));
    const QByteArray kept = preferences.readAll();
    const QByteArray line = "\"timeframeInMinutes\": " + stored;
    QVERIFY2(kept.contains(line), kept.constData());
}

void AppDelegateTest::aChangedDelayIsStoredAtOnce()
{
    launch();
    m_delegate->updateTimeframe(10);
    QCOMPARE(m_delegate->timeframeInMinutes(), 10);
    QCOMPARE(UserDefaults::standard().integer(preferences::timeframeInMinutes), 10);
}

void AppDelegateTest::aChangeOfTheDelayIsAnnounced()
{
    launch();
    qint64 delayWhenAnnounced = 0;
    connect(m_delegate.get(), &ObservableObject::objectWillChange, this, [&] {
        delayWhenAnnounced = m_delegate->timeframeInMinutes();
    });
    m_delegate->updateTimeframe(10);
    QCOMPARE(delayWhenAnnounced, 5);
}

void AppDelegateTest::launchingWritesNoPreferenceButTheBookmark()
{
    launch();
    QVERIFY(!UserDefaults::standard().contains(preferences::timeframeInMinutes));
    QVERIFY(!UserDefaults::standard().contains(preferences::hasCompletedOnboarding));
}

void AppDelegateTest::choosingTheSettingsTwiceOpensOneWindow()
{
    int made = 0;
    launch({
        .settings = [&made](SettingsApplicationDelegate &) -> std::unique_ptr<QWidget> {
            ++made;
            return std::make_unique<QLabel>();
        },
        .gallery = {},
    });
    m_delegate->menuBarManager()->openSettings();
    const QPointer<QWidget> first = m_delegate->settingsWindow();
    QVERIFY(first);
    QCOMPARE(first->windowTitle(), QStringLiteral("Deskbroom Settings"));
    QCOMPARE(first->size(), QSize(640, 480));
    m_delegate->menuBarManager()->openSettings();
    QCOMPARE(m_delegate->settingsWindow(), first.data());
    QCOMPARE(made, 1);
    first->close();
    QCOMPARE(m_delegate->settingsWindow(), nullptr);
    m_delegate->menuBarManager()->openSettings();
    QCOMPARE(made, 2);
}

void AppDelegateTest::closingEveryWindowLeavesTheProgramRunning()
{
    launch({.settings = {}, .gallery = [] { return std::make_unique<QLabel>(); }});
    QVERIFY(!AppDelegate::applicationShouldTerminateAfterLastWindowClosed());
    m_delegate->showGalleryWindow();
    m_delegate->galleryWindow()->close();
    QVERIFY(m_delegate->screenshotWatcher() != nullptr);
}

void AppDelegateTest::aSmallScreenHasRoomForTheGallery()
{
    launch({.gallery = [] { return std::make_unique<QLabel>(); }});
    m_delegate->showGalleryWindow();
    const QRect room = QGuiApplication::primaryScreen()->availableGeometry();
    QVERIFY(room.width() < 1200 && room.height() < 900);
    QVERIFY(room.contains(m_delegate->galleryWindow()->frameGeometry()));
    QVERIFY(m_delegate->galleryWindow()->minimumWidth() <= room.width());
}

void AppDelegateTest::withoutViewsTheWindowItemsAreDisabled()
{
    launch();
    const QList<QAction *> items = m_delegate->menuBarManager()->mainMenu().actions();
    QVERIFY(!items.at(0)->isEnabled());
    QVERIFY(items.at(2)->isEnabled());
    QVERIFY(!items.at(3)->isEnabled());
    m_delegate->showSettingsWindow();
    QCOMPARE(m_delegate->settingsWindow(), nullptr);
    m_delegate->menuBarManager()->openGallery();
    QCOMPARE(m_delegate->menuBarManager()->galleryPopover(), nullptr);
}

void AppDelegateTest::theMenuHasItsItemsInOrder()
{
    launch();
    QStringList items;
    for (const QAction *const item : m_delegate->menuBarManager()->mainMenu().actions()) {
        items.append(
            item->isSeparator()
                ? QStringLiteral("-")
                : QString(item->text() + u'|' + item->shortcut().toString() + u'|' + item->icon().name()));
    }
    QCOMPARE(
        items, QStringList({
                   QStringLiteral("Gallery|Ctrl+G|photo.on.rectangle.angled"),
                   QStringLiteral("-"),
                   QStringLiteral("Deletion Timeframe|Ctrl+T|timer"),
                   QStringLiteral("Settings|Ctrl+,|gearshape"),
                   QStringLiteral("Check for Updates…||arrow.triangle.2.circlepath"),
                   QStringLiteral("-"),
                   QStringLiteral("Quit Deskbroom|Ctrl+Q|"),
               }));
}

void AppDelegateTest::theTimeframeMenuChecksTheCurrentDelay_data()
{
    QTest::addColumn<qint64>("minutes");
    QTest::addColumn<QStringList>("checked");
    QTest::newRow("1") << qint64(1) << QStringList(QStringLiteral("1 minute"));
    QTest::newRow("5") << qint64(5) << QStringList(QStringLiteral("5 minutes"));
    QTest::newRow("60") << qint64(60) << QStringList(QStringLiteral("60 minutes"));
    QTest::newRow("none of the choices") << qint64(7) << QStringList();
}

void AppDelegateTest::theTimeframeMenuChecksTheCurrentDelay()
{
    QFETCH(const qint64, minutes);
    QFETCH(const QStringList, checked);
    launch();
    m_delegate->updateTimeframe(minutes);
    m_delegate->menuBarManager()->showTimeframeOptions();
    QVERIFY(openMenu() != nullptr);
    QStringList titles;
    QStringList checkedTitles;
    for (const QAction *const item : openMenu()->actions()) {
        titles.append(item->text());
        if (item->isChecked()) {
            checkedTitles.append(item->text());
        }
    }
    QCOMPARE(
        titles, QStringList(
                    {QStringLiteral("1 minute"), QStringLiteral("5 minutes"), QStringLiteral("10 minutes"),
                     QStringLiteral("30 minutes"), QStringLiteral("60 minutes")}));
    QCOMPARE(checkedTitles, checked);
    openMenu()->close();
}

void AppDelegateTest::choosingATimeframeStoresIt()
{
    launch();
    m_delegate->menuBarManager()->showTimeframeOptions();
    QVERIFY(openMenu() != nullptr);
    openMenu()->actions().at(3)->trigger();
    QCOMPARE(m_delegate->timeframeInMinutes(), 30);
    QCOMPARE(UserDefaults::standard().integer(preferences::timeframeInMinutes), 30);
    openMenu()->close();
}

QTEST_MAIN(AppDelegateTest)
#include "AppDelegateTest.moc"
