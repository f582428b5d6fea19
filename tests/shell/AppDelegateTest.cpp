#include "AppDelegate.h"
#include "CapturedOutput.h"
#include "FileAccessManager.h"
#include "MenuBarManager.h"
#include "NotificationCenter.h"
#include "NotificationManager.h"
#include "PopUpMenu.h"
#include "Popover.h"
#include "PushButton.h"
#include "ScreenshotManager.h"
#include "ScreenshotWatcher.h"
#include "TemporaryHome.h"
#include "UserDefaults.h"
#include "Workspace.h"
#include "files.h"
#include "waitForBackground.h"

#include <QApplication>
#include <QDir>
#include <QLabel>
#include <QScreen>
#include <QSignalSpy>
#include <QTest>
#include <QWindow>

#include <algorithm>
#include <limits>

namespace {

constexpr int patience = 15'000;

} // namespace

/// The launched program without a panel: real folders, real preferences, real views.
class AppDelegateTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();

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
    void aScreenshotIsAskedAbout();
    void deleteNowMovesItToTheTrash();
    void deleteLaterUsesTheDelayOfThatMoment();
    void whatIsPressedTwiceAnswersOnce_data();
    void whatIsPressedTwiceAnswersOnce();
    void keepLeavesIt();
    void aNewerScreenshotReplacesTheQuestion();
    void ofABurstOnlyTheLastIsAskedAbout();
    void aQuestionWaitsForAnOpenMenu();
    void withAutoCopyTheClipboardComesFirst();
    void aGrantedFolderStartsWatchingAfresh();

private:
    void launch(WindowViews views = {});
    QString makeScreenshot(const QString &name = QStringLiteral("Screenshot 1.png")) const;
    [[nodiscard]] QWidget *question() const;
    /// In the question, none if it isn't there.
    [[nodiscard]] PushButton *button(const QString &text) const;
    void press(const QString &text) const;
    [[nodiscard]] bool isInTrash(const QString &name) const;
    [[nodiscard]] static PopUpMenu *openMenu();

    const std::unique_ptr<TemporaryHome> m_home = std::make_unique<TemporaryHome>();
    std::unique_ptr<CapturedOutput> m_output;
    std::unique_ptr<AppDelegate> m_delegate;
};

void AppDelegateTest::init()
{
    for (const QString &folder : {m_home->desktop(), m_home->pictures(), m_home->downloads()}) {
        files::makeFolder(folder);
    }
    m_output = std::make_unique<CapturedOutput>();
}

void AppDelegateTest::cleanup()
{
    m_delegate.reset();
    waitForBackground();
    m_output.reset();
    for (const QString &folder :
         {QStringLiteral("/Desktop"), QStringLiteral("/.local/share/Trash"),
          QStringLiteral("/.config/Deskbroom")}) {
        QDir(m_home->path() + folder).removeRecursively();
    }
}

void AppDelegateTest::launch(WindowViews views)
{
    m_delegate = std::make_unique<AppDelegate>(std::move(views));
    m_delegate->applicationDidFinishLaunching();
}

QString AppDelegateTest::makeScreenshot(const QString &name) const
{
    const QString path = m_home->desktop() + u'/' + name;
    files::write(path);
    return path;
}

QWidget *AppDelegateTest::question() const
{
    const Popover *const popover = m_delegate->menuBarManager()->confirmationPopover();
    return popover == nullptr ? nullptr : const_cast<QWidget *>(popover->window());
}

PushButton *AppDelegateTest::button(const QString &text) const
{
    const auto buttons = question()->findChildren<PushButton *>();
    const auto found = std::ranges::find(buttons, text, &PushButton::text);
    return found == buttons.end() ? nullptr : *found;
}

void AppDelegateTest::press(const QString &text) const
{
    QTRY_VERIFY(question() != nullptr);
    PushButton *const pressed = button(text);
    QVERIFY2(pressed != nullptr, qPrintable(text));
    pressed->click();
}

bool AppDelegateTest::isInTrash(const QString &name) const
{
    return files::exists(m_home->trashedFiles() + u'/' + name);
}

PopUpMenu *AppDelegateTest::openMenu()
{
    return qobject_cast<PopUpMenu *>(QApplication::activePopupWidget());
}

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

void AppDelegateTest::aScreenshotIsAskedAbout()
{
    launch();
    QSignalSpy seeded(m_delegate->screenshotWatcher(), &ScreenshotWatcher::didApplyScan);
    QVERIFY(seeded.wait(patience));
    makeScreenshot();
    QTRY_VERIFY_WITH_TIMEOUT(question() != nullptr, patience);
}

void AppDelegateTest::deleteNowMovesItToTheTrash()
{
    launch();
    m_delegate->watcherDidDetectScreenshot(makeScreenshot());
    press(QStringLiteral("Delete Now"));
    QCOMPARE(question(), nullptr);
    QTRY_VERIFY_WITH_TIMEOUT(isInTrash(QStringLiteral("Screenshot 1.png")), patience);
}

void AppDelegateTest::deleteLaterUsesTheDelayOfThatMoment()
{
    launch();
    m_delegate->watcherDidDetectScreenshot(makeScreenshot());
    QTRY_VERIFY(question() != nullptr);
    m_delegate->updateTimeframe(0);
    press(QStringLiteral("Delete in 5 min"));
    QCOMPARE(question(), nullptr);
    QVERIFY(m_output->contains(QStringLiteral("Scheduled deletion of Screenshot 1.png in 0 minute")));
    QTRY_VERIFY_WITH_TIMEOUT(isInTrash(QStringLiteral("Screenshot 1.png")), patience);
}

void AppDelegateTest::whatIsPressedTwiceAnswersOnce_data()
{
    QTest::addColumn<bool>("isKey");
    QTest::newRow("a key") << true;
    QTest::newRow("the mouse") << false;
}

void AppDelegateTest::whatIsPressedTwiceAnswersOnce()
{
    QFETCH(const bool, isKey);
    launch();
    m_delegate->watcherDidDetectScreenshot(makeScreenshot());
    QTRY_VERIFY(question() != nullptr);
    QWindow *const window = question()->windowHandle();
    PushButton *const later = button(QStringLiteral("Delete in 5 min"));
    later->setFocus();
    const QPoint place = later->mapTo(question(), later->rect().center());
    QTRY_COMPARE(question()->childAt(place), later); // after the mouse's time of grace
    // The second time has waited in the queue of a busy program.
    for (int time = 0; time < 2; ++time) {
        if (isKey) {
            QTest::keyClick(window, Qt::Key_Return);
        } else {
            QTest::mouseClick(window, Qt::LeftButton, {}, place);
        }
    }
    QCOMPARE(question(), nullptr);
    QCOMPARE(m_output->lines().filter(QStringLiteral("Scheduled deletion")).size(), 1);
}

void AppDelegateTest::keepLeavesIt()
{
    launch();
    const QString path = makeScreenshot();
    m_delegate->watcherDidDetectScreenshot(path);
    press(QStringLiteral("Keep"));
    QCOMPARE(question(), nullptr);
    QVERIFY(files::exists(path));
    QCOMPARE(m_output->lines(), QStringList());
    QCOMPARE(m_delegate->screenshotManager()->pendingDeletionCount(), size_t(0));
}

void AppDelegateTest::aNewerScreenshotReplacesTheQuestion()
{
    launch();
    const QString first = makeScreenshot();
    m_delegate->watcherDidDetectScreenshot(first);
    QTRY_VERIFY(question() != nullptr);
    const QPointer<QWidget> firstQuestion = question();
    m_delegate->watcherDidDetectScreenshot(makeScreenshot(QStringLiteral("Screenshot 2.png")));
    QTRY_VERIFY(!firstQuestion);
    press(QStringLiteral("Delete Now"));
    QTRY_VERIFY_WITH_TIMEOUT(isInTrash(QStringLiteral("Screenshot 2.png")), patience);
    QVERIFY(files::exists(first));
}

void AppDelegateTest::ofABurstOnlyTheLastIsAskedAbout()
{
    launch();
    for (int i = 0; i < 1000; ++i) {
        m_delegate->watcherDidDetectScreenshot(makeScreenshot(QStringLiteral("Screenshot %1.png").arg(i)));
    }
    press(QStringLiteral("Delete Now"));
    QTRY_VERIFY_WITH_TIMEOUT(isInTrash(QStringLiteral("Screenshot 999.png")), patience);
    QCOMPARE(QDir(m_home->desktop()).entryList(QDir::Files).size(), 999);
}

void AppDelegateTest::aQuestionWaitsForAnOpenMenu()
{
    launch();
    m_delegate->menuBarManager()->statusItemClicked();
    QVERIFY(openMenu() != nullptr);
    m_delegate->watcherDidDetectScreenshot(makeScreenshot());
    QCoreApplication::processEvents();
    QCOMPARE(question(), nullptr);
    openMenu()->close();
    QTRY_VERIFY(question() != nullptr);
}

void AppDelegateTest::withAutoCopyTheClipboardComesFirst()
{
    UserDefaults::standard().setBoolean(preferences::autoCopyToClipboard, true);
    launch();
    QImage image(4, 3, QImage::Format_RGB32);
    image.fill(Qt::red);
    const QString path = m_home->desktop() + QStringLiteral("/Screenshot 1.png");
    QVERIFY(image.save(path));
    m_delegate->watcherDidDetectScreenshot(path);
    QCOMPARE(question(), nullptr);
    QVERIFY(m_output->contains(QStringLiteral("Copied screenshot to clipboard: Screenshot 1.png")));
    QTRY_VERIFY(question() != nullptr);
}

void AppDelegateTest::aGrantedFolderStartsWatchingAfresh()
{
    launch();
    const QPointer<ScreenshotWatcher> first = m_delegate->screenshotWatcher();
    NotificationCenter::defaultCenter().post(QStringLiteral("folderAccessGranted"));
    QVERIFY(!first);
    QVERIFY(m_delegate->screenshotWatcher() != nullptr);
    QSignalSpy seeded(m_delegate->screenshotWatcher(), &ScreenshotWatcher::didApplyScan);
    QVERIFY(seeded.wait(patience));
    makeScreenshot();
    QTRY_VERIFY_WITH_TIMEOUT(question() != nullptr, patience);
}

QTEST_MAIN(AppDelegateTest)
#include "AppDelegateTest.moc"
