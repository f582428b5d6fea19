#include "UserNotificationCenter.h"

#include "NotificationService.h"
#include "RecordingNotificationServer.h"

#include <QGuiApplication>
#include <QTest>
#include <QThread>
#include <QWindow>

#include <memory>

using Status = UserNotificationCenter::AuthorizationStatus;
using Requester = UserNotificationCenter::AuthorizationRequester;
using Permission = NotificationService::Permission;

namespace {

const UserNotificationRequest copied{
    .identifier = QStringLiteral("copied"),
    .content = {
        .title = QStringLiteral("title"),
        .body = QStringLiteral("body"),
        .categoryIdentifier = QStringLiteral("label")}};

const Error failure{
    .domain = UserNotificationCenter::errorDomain,
    .code = UserNotificationCenter::Refused,
    .localizedDescription = QStringLiteral("No")};

/// Records what it is to show, and answers as it is told.
class RecordingService final : public NotificationService {
public:
    void show(const UserNotificationRequest &request, Shown done) override
    {
        requests.append(request);
        done(answer);
    }

    void askPermission(std::function<void(const Result<Permission> &)> done) override
    {
        ++questions;
        done(permission);
    }

    QList<UserNotificationRequest> requests;
    std::optional<Error> answer;
    Result<Permission> permission = Permission::Granted;
    int questions = 0;
};

class RecordingDelegate final : public QObject, public UserNotificationCenterDelegate {
public:
    PresentationOptions willPresent(const UserNotificationRequest &request) override
    {
        presented.append(request);
        return options;
    }

    void didReceive(
        const UserNotificationRequest &request, const std::function<void()> &completionHandler) override
    {
        received.append(request);
        completionHandler();
    }

    QList<UserNotificationRequest> presented;
    QList<UserNotificationRequest> received;
    PresentationOptions options;
};

} // namespace

class UserNotificationCenterTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void init();
    void showsOnTheNextTurnOfTheLoop();
    void tellsWhatTheServiceAnswered();
    void aRequestNeedsNoCompletion();
    void requestsOfOtherThreadsComeOver();
    void theDelegateIsNotAskedInTheBackground();
    void aClickReachesTheDelegate();
    void aClickWithoutADelegateIsIgnored();
    void isNotDeterminedBeforeTheUserIsAsked();
    void theUsersAnswerIsReadAfresh();
    void theRequestTellsWhatTheDesktopHasSet_data();
    void theRequestTellsWhatTheDesktopHasSet();
    void theCurrentCentreShowsOverTheSessionBus();
    // Last, because the toolkit's offscreen platform leaves the program in front when its window has gone.
    void theDelegateDecidesInTheForeground_data();
    void theDelegateDecidesInTheForeground();
    void nothingIsShownInTheForegroundWithoutADelegate();

private:
    using Outcomes = QList<std::optional<Error>>;

    [[nodiscard]] Status status() const
    {
        std::optional<Status> answer;
        m_center->getAuthorizationStatus([&](Status status) { answer = status; });
        return QTest::qWaitFor([&] { return answer.has_value(); }) ? *answer : Status::Ephemeral;
    }

    RecordingService *m_service = nullptr;
    std::unique_ptr<UserNotificationCenter> m_center;
};

void UserNotificationCenterTest::init()
{
    auto service = std::make_unique<RecordingService>();
    m_service = service.get();
    m_center = std::make_unique<UserNotificationCenter>(std::move(service));
}

void UserNotificationCenterTest::showsOnTheNextTurnOfTheLoop()
{
    Outcomes outcomes;
    m_center->add(copied, [&](const std::optional<Error> &error) { outcomes.append(error); });
    QVERIFY(m_service->requests.isEmpty());

    QTRY_COMPARE(outcomes, Outcomes(1));
    QCOMPARE(m_service->requests, QList{copied});
}

void UserNotificationCenterTest::tellsWhatTheServiceAnswered()
{
    m_service->answer = failure;
    Outcomes outcomes;
    m_center->add(copied, [&](const std::optional<Error> &error) { outcomes.append(error); });

    QTRY_COMPARE(outcomes, Outcomes{failure});
}

void UserNotificationCenterTest::aRequestNeedsNoCompletion()
{
    m_center->add(copied);

    QTRY_COMPARE(m_service->requests, QList{copied});
}

void UserNotificationCenterTest::requestsOfOtherThreadsComeOver()
{
    const QThread *completionThread = nullptr;
    const std::unique_ptr<QThread> thread(QThread::create([&] {
        m_center->add(
            copied, [&](const std::optional<Error> &) { completionThread = QThread::currentThread(); });
    }));
    thread->start();

    QTRY_COMPARE(completionThread, QThread::currentThread());
    QVERIFY(thread->wait());
    QCOMPARE(m_service->requests, QList{copied});
}

void UserNotificationCenterTest::theDelegateIsNotAskedInTheBackground()
{
    RecordingDelegate delegate;
    m_center->setDelegate(&delegate);
    QVERIFY(QGuiApplication::applicationState() != Qt::ApplicationActive);
    m_center->add(copied);

    QTRY_COMPARE(m_service->requests, QList{copied});
    QVERIFY(delegate.presented.isEmpty());
}

void UserNotificationCenterTest::aClickReachesTheDelegate()
{
    RecordingDelegate delegate;
    m_center->setDelegate(&delegate);

    Q_EMIT m_service->clicked(copied);

    QCOMPARE(delegate.received, QList{copied});
}

void UserNotificationCenterTest::aClickWithoutADelegateIsIgnored()
{
    Q_EMIT m_service->clicked(copied);
    auto delegate = std::make_unique<RecordingDelegate>();
    m_center->setDelegate(delegate.get());
    delegate.reset();
    Q_EMIT m_service->clicked(copied);

    // The centre still works.
    m_center->add(copied);
    QTRY_COMPARE(m_service->requests.size(), 1);
}

void UserNotificationCenterTest::isNotDeterminedBeforeTheUserIsAsked()
{
    QCOMPARE(status(), Status::NotDetermined);
    QCOMPARE(m_service->questions, 0);

    bool isAnswered = false;
    m_center->requestAuthorization(
        UserNotificationCenter::AuthorizationOption::Alert, Requester::Launch,
        [&](bool isGranted, const std::optional<Error> &error) {
            isAnswered = true;
            QVERIFY(isGranted);
            QVERIFY(!error);
        });

    QTRY_VERIFY(isAnswered);
    QCOMPARE(status(), Status::NotDetermined);
}

void UserNotificationCenterTest::theUsersAnswerIsReadAfresh()
{
    m_center->requestAuthorization(
        UserNotificationCenter::AuthorizationOption::Alert, Requester::User,
        [](bool, const std::optional<Error> &) {});
    QCOMPARE(status(), Status::Authorized);

    m_service->permission = Permission::Denied;
    QCOMPARE(status(), Status::Denied);
    m_service->permission = std::unexpected(failure);
    QCOMPARE(status(), Status::Denied);
    m_service->permission = Permission::Granted;
    QCOMPARE(status(), Status::Authorized);
}

void UserNotificationCenterTest::theRequestTellsWhatTheDesktopHasSet_data()
{
    QTest::addColumn<Result<Permission>>("permission");
    QTest::addColumn<bool>("isGranted");
    QTest::addColumn<std::optional<Error>>("error");
    QTest::newRow("granted") << Result<Permission>(Permission::Granted) << true << std::optional<Error>();
    QTest::newRow("denied") << Result<Permission>(Permission::Denied) << false << std::optional<Error>();
    QTest::newRow("not answered") << Result<Permission>(std::unexpected(failure)) << false
                                  << std::optional(failure);
}

void UserNotificationCenterTest::theRequestTellsWhatTheDesktopHasSet()
{
    QFETCH(const Result<Permission>, permission);
    QFETCH(const bool, isGranted);
    QFETCH(const std::optional<Error>, error);
    m_service->permission = permission;

    for (const Requester requester : {Requester::Launch, Requester::User}) {
        std::optional<bool> granted;
        std::optional<Error> reason;
        m_center->requestAuthorization(
            UserNotificationCenter::AuthorizationOption::Alert, requester,
            [&](bool answer, const std::optional<Error> &why) {
                granted = answer;
                reason = why;
            });
        QTRY_COMPARE(granted, std::optional(isGranted));
        QCOMPARE(reason, error);
    }
}

void UserNotificationCenterTest::theCurrentCentreShowsOverTheSessionBus()
{
    RecordingNotificationServer server(qEnvironmentVariable("DBUS_SESSION_BUS_ADDRESS"));
    RecordingDelegate delegate;
    Outcomes outcomes;
    const std::unique_ptr<QThread> thread(QThread::create([&] {
        UserNotificationCenter::current().add(
            copied, [&](const std::optional<Error> &error) { outcomes.append(error); });
    }));
    thread->start();
    QTRY_COMPARE(outcomes, Outcomes(1));
    QVERIFY(thread->wait());
    QCOMPARE(server.shown().size(), 1);
    QCOMPARE(server.shown().constFirst().title, copied.content.title);

    UserNotificationCenter::current().setDelegate(&delegate);
    server.click(server.shown().constFirst().number);

    QTRY_COMPARE(delegate.received, QList{copied});
}

void UserNotificationCenterTest::theDelegateDecidesInTheForeground_data()
{
    QTest::addColumn<PresentationOptions>("options");
    QTest::addColumn<bool>("isShown");
    QTest::newRow("nothing") << PresentationOptions() << false;
    QTest::newRow("sound alone") << PresentationOptions(PresentationOption::Sound) << false;
    QTest::newRow("banner") << PresentationOptions(PresentationOption::Banner) << true;
    QTest::newRow("both") << (PresentationOption::Banner | PresentationOption::Sound) << true;
}

void UserNotificationCenterTest::theDelegateDecidesInTheForeground()
{
    QFETCH(const PresentationOptions, options);
    QFETCH(const bool, isShown);
    RecordingDelegate delegate;
    delegate.options = options;
    m_center->setDelegate(&delegate);
    QWindow window;
    window.show();
    window.requestActivate();
    QTRY_COMPARE(QGuiApplication::applicationState(), Qt::ApplicationActive);

    Outcomes outcomes;
    m_center->add(copied, [&](const std::optional<Error> &error) { outcomes.append(error); });

    QTRY_COMPARE(outcomes, Outcomes(1));
    QCOMPARE(delegate.presented, QList{copied});
    QCOMPARE(m_service->requests.size(), isShown ? 1 : 0);
}

void UserNotificationCenterTest::nothingIsShownInTheForegroundWithoutADelegate()
{
    QWindow window;
    window.show();
    window.requestActivate();
    QTRY_COMPARE(QGuiApplication::applicationState(), Qt::ApplicationActive);

    Outcomes outcomes;
    m_center->add(copied, [&](const std::optional<Error> &error) { outcomes.append(error); });

    QTRY_COMPARE(outcomes, Outcomes(1));
    QVERIFY(m_service->requests.isEmpty());
}

QTEST_MAIN(UserNotificationCenterTest)

#include "UserNotificationCenterTest.moc"
