#include "OnboardingFolderAccessStepView.h"

#include "FileAccessManager.h"
#include "NotificationCenter.h"
#include "RecordingFileChooser.h"
#include "RecordingNotificationServer.h"
#include "SecurityScopedAccess.h"
#include "TemporaryHome.h"
#include "files.h"
#include "onboardingPage.h"
#include "savePicture.h"
#include "waitForBackground.h"

#include <QFile>
#include <QTest>
#include <QUrl>

#include <sys/stat.h>

#include <memory>

namespace {

const QStringList without{QStringLiteral("Grant Folder Access"), QStringLiteral("I'll do this later")};
const QStringList granted{QStringLiteral("(Access Granted)"), QStringLiteral("Continue")};

} // namespace

class OnboardingFolderAccessStepViewTest final : public QObject {
    Q_OBJECT

private:
    enum class Desktop { Readable, Locked };

    void makeManager(Desktop desktop)
    {
        const mode_t mode = desktop == Desktop::Readable ? 0700 : 0;
        QCOMPARE(::chmod(QFile::encodeName(m_home->desktop()).constData(), mode), 0);
        m_manager = std::make_unique<FileAccessManager>();
    }

    void showPage()
    {
        m_page = std::make_unique<OnboardingFolderAccessStepView>(*m_manager, [this] { ++m_continued; });
        m_page->resize(onboardingPage::size);
        m_page->show();
    }

    static void waitForAnswers()
    {
        waitForBackground();
        QCoreApplication::processEvents();
    }

    [[nodiscard]] QStringList labels() const { return onboardingPage::labels(*m_page); }

    std::unique_ptr<TemporaryHome> m_home;
    std::unique_ptr<RecordingNotificationServer> m_server;
    std::unique_ptr<FileAccessManager> m_manager;
    std::unique_ptr<OnboardingFolderAccessStepView> m_page;
    int m_continued = 0;

private Q_SLOTS:
    void init();
    void cleanup();
    void withoutABookmarkItAsksForAFolder();
    void accessThatIsThereIsShown();
    void isAskedForUntilItIsKnown();
    void aGrantElsewhereFlipsIt();
    void aGrantIsNotUndoneByAnEarlierQuestion();
    void theButtonOpensThePicker();
    void tenCancelledPickersChangeNothing();
    void aPickedFolderIsGranted();
    void aPickedFolderThatCannotBeReadChangesNothing();
    void theLinkLeadsOn_data();
    void theLinkLeadsOn();
    void mayGoWhileTheQuestionIsUnderWay();
};

void OnboardingFolderAccessStepViewTest::init()
{
    m_home = std::make_unique<TemporaryHome>();
    m_server =
        std::make_unique<RecordingNotificationServer>(qEnvironmentVariable("DBUS_SESSION_BUS_ADDRESS"));
    m_continued = 0;
}

void OnboardingFolderAccessStepViewTest::cleanup()
{
    m_page.reset();
    waitForAnswers();
    m_manager.reset();
    waitForAnswers();
    SecurityScopedAccess::keep(std::nullopt);
    m_server.reset();
    m_home.reset();
}

void OnboardingFolderAccessStepViewTest::withoutABookmarkItAsksForAFolder()
{
    makeManager(Desktop::Locked);
    showPage();
    QCOMPARE(labels(), without);
    waitForAnswers();
    QCOMPARE(labels(), without);
    QVERIFY(!m_page->hasAccess());
    savePicture(*m_page, QStringLiteral("onboarding-3-folder"));
}

void OnboardingFolderAccessStepViewTest::accessThatIsThereIsShown()
{
    makeManager(Desktop::Readable);
    showPage();
    QTRY_COMPARE(labels(), granted);
    QVERIFY(m_page->hasAccess());
    QCOMPARE(m_continued, 0);
}

void OnboardingFolderAccessStepViewTest::isAskedForUntilItIsKnown()
{
    makeManager(Desktop::Readable);
    showPage();
    QCOMPARE(labels(), without);
    QTRY_COMPARE(labels(), granted);
}

void OnboardingFolderAccessStepViewTest::aGrantElsewhereFlipsIt()
{
    makeManager(Desktop::Locked);
    showPage();
    NotificationCenter::defaultCenter().post(FileAccessManager::folderAccessGranted);
    // It isn't checked again: there is no bookmark here.
    QCOMPARE(labels(), granted);
    waitForAnswers();
    QCOMPARE(labels(), granted);
}

void OnboardingFolderAccessStepViewTest::aGrantIsNotUndoneByAnEarlierQuestion()
{
    makeManager(Desktop::Readable);
    // There is a bookmark of what can't be read any more.
    QCOMPARE(::chmod(QFile::encodeName(m_home->desktop()).constData(), 0), 0);
    showPage();
    NotificationCenter::defaultCenter().post(FileAccessManager::folderAccessGranted);
    waitForAnswers();
    waitForAnswers();
    QCOMPARE(labels(), granted);
}

void OnboardingFolderAccessStepViewTest::theButtonOpensThePicker()
{
    const RecordingFileChooser chooser;
    makeManager(Desktop::Locked);
    showPage();
    onboardingPage::primary(*m_page).click();
    QTRY_COMPARE(chooser.questions().size(), 1);
    QCOMPARE(labels(), without);
}

void OnboardingFolderAccessStepViewTest::tenCancelledPickersChangeNothing()
{
    RecordingFileChooser chooser;
    makeManager(Desktop::Locked);
    showPage();
    for (int question = 1; question <= 10; ++question) {
        onboardingPage::primary(*m_page).click();
        QTRY_COMPARE(chooser.questions().size(), question);
        chooser.respond(RecordingFileChooser::Response::Cancelled);
        QTRY_VERIFY(m_manager->children().isEmpty());
        QCOMPARE(labels(), without);
    }
    QVERIFY(!m_manager->hasBookmark());
    QCOMPARE(m_continued, 0);
}

void OnboardingFolderAccessStepViewTest::aPickedFolderIsGranted()
{
    RecordingFileChooser chooser;
    makeManager(Desktop::Locked);
    showPage();
    onboardingPage::primary(*m_page).click();
    QTRY_COMPARE(chooser.questions().size(), 1);
    chooser.respond(
        RecordingFileChooser::Response::Success, {QUrl::fromLocalFile(m_home->pictures()).toString()});
    QTRY_COMPARE(labels(), granted);
    QCOMPARE(m_continued, 0);
}

void OnboardingFolderAccessStepViewTest::aPickedFolderThatCannotBeReadChangesNothing()
{
    RecordingFileChooser chooser;
    makeManager(Desktop::Locked);
    showPage();
    onboardingPage::primary(*m_page).click();
    QTRY_COMPARE(chooser.questions().size(), 1);
    const qsizetype before = m_server->notifications().size();
    chooser.respond(
        RecordingFileChooser::Response::Success, {QUrl::fromLocalFile(m_home->desktop()).toString()});
    QTRY_COMPARE(m_server->notifications().size(), before + 1);
    QCOMPARE(m_server->notifications().constLast().title, QStringLiteral("Access Failed"));
    QCOMPARE(labels(), without);
    QVERIFY(!m_page->hasAccess());
    onboardingPage::secondary(*m_page).click();
    QCOMPARE(m_continued, 1);
}

void OnboardingFolderAccessStepViewTest::theLinkLeadsOn_data()
{
    QTest::addColumn<bool>("isReadable");
    QTest::addColumn<QStringList>("expected");
    QTest::newRow("without access") << false << without;
    QTest::newRow("with access") << true << granted;
}

void OnboardingFolderAccessStepViewTest::theLinkLeadsOn()
{
    QFETCH(const bool, isReadable);
    QFETCH(const QStringList, expected);
    makeManager(isReadable ? Desktop::Readable : Desktop::Locked);
    showPage();
    QTRY_COMPARE(labels(), expected);
    onboardingPage::secondary(*m_page).click();
    QCOMPARE(m_continued, 1);
}

void OnboardingFolderAccessStepViewTest::mayGoWhileTheQuestionIsUnderWay()
{
    makeManager(Desktop::Readable);
    for (int round = 0; round < 20; ++round) {
        showPage();
        m_page.reset();
    }
    waitForAnswers();
    QCOMPARE(m_continued, 0);
}

QTEST_MAIN(OnboardingFolderAccessStepViewTest)
#include "OnboardingFolderAccessStepViewTest.moc"
