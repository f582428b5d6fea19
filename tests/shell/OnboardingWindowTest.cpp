#include "AppDelegate.h"
#include "FileAccessManager.h"
#include "Preferences.h"
#include "ScreenshotWatcher.h"
#include "TemporaryHome.h"
#include "UserDefaults.h"
#include "files.h"
#include "waitForBackground.h"

#include <QTest>

/// The launch of a new user's program, with a stand-in for the pages.
class OnboardingWindowTest final : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void init();
    void cleanup();

    void theFirstLaunchShowsThePagesAndWatchesNothing();
    void theWindowHasATitleAndNothingToCloseItWith();
    void finishingIsStoredAndBeginsToWatch();
    void whoHasFinishedSeesNoneOfIt();
    void aWatcherThatAGrantHasMadeIsKept();
    void closingItIsNotFinishing();
    void askedForAgainItIsTheSameWindow();
    void finishingAfterTheProgramsEndDoesNothing();

private:
    void launch();

    const TemporaryHome m_home;
    std::unique_ptr<AppDelegate> m_delegate;
    /// What the pages would call.
    std::function<void()> m_finish;
    int m_made = 0;
};

void OnboardingWindowTest::initTestCase()
{
    for (const QString &folder : {m_home.desktop(), m_home.pictures(), m_home.downloads()}) {
        files::makeFolder(folder);
    }
}

void OnboardingWindowTest::init()
{
    m_made = 0;
    UserDefaults::standard().setBoolean(preferences::hasCompletedOnboarding, false);
    launch();
}

void OnboardingWindowTest::cleanup()
{
    m_delegate.reset();
    m_finish = {};
    waitForBackground();
}

void OnboardingWindowTest::launch()
{
    m_delegate = std::make_unique<AppDelegate>(WindowViews{.onboarding = [this](auto onFinished) {
        ++m_made;
        m_finish = std::move(onFinished);
        return std::make_unique<QWidget>();
    }});
    m_delegate->applicationDidFinishLaunching();
}

void OnboardingWindowTest::theFirstLaunchShowsThePagesAndWatchesNothing()
{
    QVERIFY(m_delegate->onboardingWindow() != nullptr);
    QVERIFY(m_delegate->onboardingWindow()->isVisible());
    QCOMPARE(m_delegate->screenshotWatcher(), nullptr);
    // The others are there already, and the panel's item with them.
    QVERIFY(m_delegate->menuBarManager() != nullptr);
    QVERIFY(m_delegate->fileAccessManager()->persistentAccessUrl().has_value());
}

void OnboardingWindowTest::theWindowHasATitleAndNothingToCloseItWith()
{
    QWidget &window = *m_delegate->onboardingWindow();
    QCOMPARE(window.windowTitle(), QStringLiteral("Welcome to Deskbroom"));
    QCOMPARE(window.size(), QSize(560, 680));
    QCOMPARE(window.minimumSize(), window.maximumSize());
    constexpr Qt::WindowFlags buttons =
        Qt::WindowCloseButtonHint | Qt::WindowMinimizeButtonHint | Qt::WindowMaximizeButtonHint;
    QCOMPARE(window.windowFlags() & buttons, Qt::WindowFlags());
    QVERIFY(window.windowFlags().testFlag(Qt::WindowTitleHint));
    QTest::keyClick(&window, Qt::Key_Escape);
    QTest::keyClick(&window, Qt::Key_W, Qt::ControlModifier);
    QVERIFY(m_delegate->onboardingWindow() != nullptr);
}

void OnboardingWindowTest::finishingIsStoredAndBeginsToWatch()
{
    m_finish();
    QVERIFY(UserDefaults::standard().boolean(preferences::hasCompletedOnboarding));
    QCOMPARE(m_delegate->onboardingWindow(), nullptr);
    QVERIFY(m_delegate->screenshotWatcher() != nullptr);
    QVERIFY(!m_delegate->showOnboardingIfNeeded());
}

void OnboardingWindowTest::whoHasFinishedSeesNoneOfIt()
{
    m_finish();
    launch();
    QCOMPARE(m_made, 1);
    QCOMPARE(m_delegate->onboardingWindow(), nullptr);
    QVERIFY(m_delegate->screenshotWatcher() != nullptr);
}

void OnboardingWindowTest::aWatcherThatAGrantHasMadeIsKept()
{
    m_delegate->folderAccessGranted();
    const ScreenshotWatcher *const watcher = m_delegate->screenshotWatcher();
    QVERIFY(watcher != nullptr);
    QVERIFY(m_delegate->onboardingWindow() != nullptr);
    m_finish();
    QCOMPARE(m_delegate->screenshotWatcher(), watcher);
}

void OnboardingWindowTest::closingItIsNotFinishing()
{
    m_delegate->onboardingWindow()->close();
    QCOMPARE(m_delegate->onboardingWindow(), nullptr);
    QVERIFY(!UserDefaults::standard().boolean(preferences::hasCompletedOnboarding));
    QCOMPARE(m_delegate->screenshotWatcher(), nullptr);
    // A second start of the program brings it back.
    QVERIFY(m_delegate->showOnboardingIfNeeded());
    QCOMPARE(m_made, 2);
}

void OnboardingWindowTest::askedForAgainItIsTheSameWindow()
{
    const QWidget *const window = m_delegate->onboardingWindow();
    QVERIFY(m_delegate->showOnboardingIfNeeded());
    QCOMPARE(m_delegate->onboardingWindow(), window);
    QCOMPARE(m_made, 1);
}

void OnboardingWindowTest::finishingAfterTheProgramsEndDoesNothing()
{
    m_delegate.reset();
    m_finish();
    QVERIFY(!UserDefaults::standard().boolean(preferences::hasCompletedOnboarding));
}

QTEST_MAIN(OnboardingWindowTest)
#include "OnboardingWindowTest.moc"
