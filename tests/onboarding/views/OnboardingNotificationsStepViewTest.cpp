#include "OnboardingNotificationsStepView.h"

#include "NotificationService.h"
#include "TemporaryHome.h"
#include "files.h"
#include "onboardingPage.h"
#include "savePicture.h"

#include <QApplication>
#include <QFile>
#include <QTest>

#include <memory>

using Permission = NotificationService::Permission;
using Status = UserNotificationCenter::AuthorizationStatus;

namespace {

const QStringList undecided{QStringLiteral("Enable Notifications"), QStringLiteral("Not now")};
const QStringList denied{QStringLiteral("Open System Settings"), QStringLiteral("Continue")};
const QStringList authorized{QStringLiteral("(Notifications On)"), QStringLiteral("Continue")};

/// Answers at once, or keeps the answers until it is told.
class HesitantService final : public NotificationService {
public:
    using Answer = std::function<void(const Result<Permission> &)>;

    void show(const UserNotificationRequest &, Shown done) override { done(std::nullopt); }

    void askPermission(Answer done) override
    {
        ++questions;
        if (hesitates) {
            waiting.append(std::move(done));
        } else {
            done(permission);
        }
    }

    Result<Permission> permission = Permission::Granted;
    bool hesitates = false;
    int questions = 0;
    QList<Answer> waiting;
};

} // namespace

class OnboardingNotificationsStepViewTest final : public QObject {
    Q_OBJECT

private:
    void showPage()
    {
        m_page = std::make_unique<OnboardingNotificationsStepView>(*m_center, [this] { ++m_continued; });
        m_page->resize(onboardingPage::size);
        m_page->show();
    }

    void askAsTheUser() const
    {
        m_center->requestAuthorization(
            {}, UserNotificationCenter::AuthorizationRequester::User,
            [](bool, const std::optional<Error> &) {});
    }

    void pressPrimary() const { onboardingPage::primary(*m_page).click(); }

    [[nodiscard]] QStringList labels() const { return onboardingPage::labels(*m_page); }

    const TemporaryHome m_home;
    HesitantService *m_service = nullptr;
    std::unique_ptr<UserNotificationCenter> m_center;
    std::unique_ptr<OnboardingNotificationsStepView> m_page;
    int m_continued = 0;

private Q_SLOTS:
    void init();
    void cleanup();
    void beginsUndecidedAndAsksNobody();
    void showsWhatIsSetAlready_data();
    void showsWhatIsSetAlready();
    void theButtonAsksAndShowsTheOutcome_data();
    void theButtonAsksAndShowsTheOutcome();
    void aFailedRequestShowsTheSettings();
    void deniedOpensTheNotificationSettingsAndStays();
    void theLinkLeadsOnWhateverTheStatus_data();
    void theLinkLeadsOnWhateverTheStatus();
    void readsAgainWhenTheUserComesBack();
    void readsAgainWhenANotificationServiceComes();
    void answersAfterThePageHasGoneAreDropped();
    void anOldAnswerDoesNotReplaceANewerOne();
    void theKeyboardGoesToTheLinkWhenTheButtonIsDone();
};

void OnboardingNotificationsStepViewTest::init()
{
    qunsetenv("XDG_CURRENT_DESKTOP");
    m_continued = 0;
    auto service = std::make_unique<HesitantService>();
    m_service = service.get();
    m_center = std::make_unique<UserNotificationCenter>(std::move(service));
}

void OnboardingNotificationsStepViewTest::cleanup()
{
    m_page.reset();
    m_center.reset();
}

void OnboardingNotificationsStepViewTest::beginsUndecidedAndAsksNobody()
{
    showPage();
    QCOMPARE(labels(), undecided);
    QVERIFY(QTest::qWaitForWindowActive(m_page.get()));
    QCOMPARE(labels(), undecided);
    QCOMPARE(m_service->questions, 0);
}

void OnboardingNotificationsStepViewTest::showsWhatIsSetAlready_data()
{
    QTest::addColumn<bool>("isGranted");
    QTest::addColumn<QStringList>("expected");
    QTest::newRow("authorized") << true << authorized;
    QTest::newRow("denied") << false << denied;
}

void OnboardingNotificationsStepViewTest::showsWhatIsSetAlready()
{
    QFETCH(const bool, isGranted);
    QFETCH(const QStringList, expected);
    askAsTheUser();
    m_service->permission = isGranted ? Permission::Granted : Permission::Denied;
    showPage();
    QTRY_COMPARE(labels(), expected);
    QCOMPARE(m_continued, 0);
    savePicture(*m_page, QStringLiteral("onboarding-2-") + QString::fromUtf8(QTest::currentDataTag()));
}

void OnboardingNotificationsStepViewTest::theButtonAsksAndShowsTheOutcome_data()
{
    showsWhatIsSetAlready_data();
}

void OnboardingNotificationsStepViewTest::theButtonAsksAndShowsTheOutcome()
{
    QFETCH(const bool, isGranted);
    QFETCH(const QStringList, expected);
    m_service->permission = isGranted ? Permission::Granted : Permission::Denied;
    showPage();
    pressPrimary();
    QTRY_COMPARE(labels(), expected);
    QCOMPARE(m_continued, 0);
    // Once to ask, once to read.
    QVERIFY(m_service->questions >= 2);
}

void OnboardingNotificationsStepViewTest::aFailedRequestShowsTheSettings()
{
    m_service->permission = std::unexpected(Error{
        .domain = UserNotificationCenter::errorDomain,
        .code = UserNotificationCenter::NoAnswer,
        .localizedDescription = {}});
    showPage();
    pressPrimary();
    QTRY_COMPARE(labels(), denied);
}

void OnboardingNotificationsStepViewTest::deniedOpensTheNotificationSettingsAndStays()
{
    const QString started = m_home.path() + QStringLiteral("/started");
    const QString program = m_home.path() + QStringLiteral("/bin/xfce4-notifyd-config");
    files::makeFolder(m_home.path() + QStringLiteral("/bin"));
    files::write(program, "#!/bin/sh\n: > '" + started.toUtf8() + "'\n");
    QVERIFY(QFile::setPermissions(program, QFile::ReadOwner | QFile::ExeOwner));
    const QByteArray path = qgetenv("PATH");
    qputenv("PATH", m_home.path().toUtf8() + "/bin:" + path);
    qputenv("XDG_CURRENT_DESKTOP", "XFCE");

    askAsTheUser();
    m_service->permission = Permission::Denied;
    showPage();
    QVERIFY(QTest::qWaitForWindowActive(m_page.get()));
    QTRY_COMPARE(labels(), denied);
    const int questions = m_service->questions;
    pressPrimary();
    QTRY_VERIFY(files::exists(started));
    QCOMPARE(labels(), denied);
    QCOMPARE(m_continued, 0);
    // It isn't asked for again.
    QCOMPARE(m_service->questions, questions);
    qputenv("PATH", path);
}

void OnboardingNotificationsStepViewTest::theLinkLeadsOnWhateverTheStatus_data()
{
    QTest::addColumn<bool>("isAsked");
    QTest::addColumn<bool>("isGranted");
    QTest::addColumn<QStringList>("expected");
    QTest::newRow("undecided") << false << true << undecided;
    QTest::newRow("authorized") << true << true << authorized;
    QTest::newRow("denied") << true << false << denied;
}

void OnboardingNotificationsStepViewTest::theLinkLeadsOnWhateverTheStatus()
{
    QFETCH(const bool, isAsked);
    QFETCH(const bool, isGranted);
    QFETCH(const QStringList, expected);
    m_service->permission = isGranted ? Permission::Granted : Permission::Denied;
    if (isAsked) {
        askAsTheUser();
    }
    showPage();
    QTRY_COMPARE(labels(), expected);
    onboardingPage::secondary(*m_page).click();
    QCOMPARE(m_continued, 1);
}

void OnboardingNotificationsStepViewTest::readsAgainWhenTheUserComesBack()
{
    askAsTheUser();
    m_service->permission = Permission::Denied;
    showPage();
    QTRY_COMPARE(labels(), denied);
    QWidget settings;
    settings.show();
    QApplication::setActiveWindow(&settings);
    m_service->permission = Permission::Granted;
    QCOMPARE(labels(), denied);
    QApplication::setActiveWindow(m_page.get());
    QTRY_COMPARE(labels(), authorized);
}

void OnboardingNotificationsStepViewTest::readsAgainWhenANotificationServiceComes()
{
    askAsTheUser();
    m_service->permission = Permission::Denied;
    showPage();
    QTRY_COMPARE(labels(), denied);
    m_service->permission = Permission::Granted;
    Q_EMIT m_service->availabilityChanged();
    QTRY_COMPARE(labels(), authorized);
}

void OnboardingNotificationsStepViewTest::answersAfterThePageHasGoneAreDropped()
{
    askAsTheUser();
    m_service->hesitates = true;
    showPage();
    QTRY_VERIFY(!m_service->waiting.isEmpty());
    m_page.reset();
    // It would be told of them: the sanitizer sees that.
    for (const HesitantService::Answer &answer : std::as_const(m_service->waiting)) {
        answer(Permission::Granted);
    }
    QCOMPARE(m_continued, 0);
}

void OnboardingNotificationsStepViewTest::anOldAnswerDoesNotReplaceANewerOne()
{
    askAsTheUser();
    m_service->hesitates = true;
    showPage();
    QVERIFY(QTest::qWaitForWindowActive(m_page.get()));
    QTRY_VERIFY(!m_service->waiting.isEmpty());
    QWidget settings;
    settings.show();
    settings.activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(&settings));
    m_service->waiting.remove(0, m_service->waiting.size() - 1);
    m_page->activateWindow();
    QTRY_COMPARE(m_service->waiting.size(), 2);
    m_service->waiting.at(1)(Permission::Granted);
    m_service->waiting.at(0)(Permission::Denied);
    QCOMPARE(labels(), authorized);
}

void OnboardingNotificationsStepViewTest::theKeyboardGoesToTheLinkWhenTheButtonIsDone()
{
    showPage();
    QVERIFY(QTest::qWaitForWindowActive(m_page.get()));
    m_page->setFocus(Qt::TabFocusReason);
    QVERIFY(onboardingPage::primary(*m_page).hasFocus());
    QTest::keyClick(m_page->focusWidget(), Qt::Key_Return);
    QTRY_COMPARE(labels(), authorized);
    QVERIFY(onboardingPage::secondary(*m_page).hasFocus());
}

QTEST_MAIN(OnboardingNotificationsStepViewTest)
#include "OnboardingNotificationsStepViewTest.moc"
