#include "UserNotificationCenter.h"

#include "NotificationService.h"

#include <QCoreApplication>
#include <QGuiApplication>
#include <QThread>

#include <utility>

UserNotificationCenter &UserNotificationCenter::current()
{
    // Never destroyed, because a thread that ends late may still add a request.
    static auto *const center = new UserNotificationCenter;
    return *center;
}

UserNotificationCenter::UserNotificationCenter()
{
    // The first to ask for the centre may be any thread.
    moveToThread(QCoreApplication::instance()->thread());
}

UserNotificationCenter::UserNotificationCenter(std::unique_ptr<NotificationService> service)
    : UserNotificationCenter()
{
    setService(std::move(service));
}

UserNotificationCenter::~UserNotificationCenter() = default;

void UserNotificationCenter::setService(std::unique_ptr<NotificationService> service)
{
    m_service = std::move(service);
    connect(m_service.get(), &NotificationService::clicked, this, &UserNotificationCenter::tellDelegate);
    connect(
        m_service.get(), &NotificationService::availabilityChanged, this,
        &UserNotificationCenter::authorizationMayHaveChanged);
}

NotificationService &UserNotificationCenter::service()
{
    if (!m_service) {
        setService(NotificationService::forSession());
    }
    return *m_service;
}

void UserNotificationCenter::setDelegate(WeakInterface<UserNotificationCenterDelegate> delegate)
{
    m_delegate = std::move(delegate);
}

void UserNotificationCenter::requestAuthorization(
    AuthorizationOptions, AuthorizationRequester requester,
    std::function<void(bool isGranted, const std::optional<Error> &error)> done)
{
    if (requester == AuthorizationRequester::User) {
        m_isUserAsked = true;
    }
    service().askPermission(
        [done = std::move(done)](const Result<NotificationService::Permission> &permission) {
            const bool isGranted = permission == NotificationService::Permission::Granted;
            done(isGranted, permission ? std::nullopt : std::optional(permission.error()));
        });
}

void UserNotificationCenter::getAuthorizationStatus(std::function<void(AuthorizationStatus)> done)
{
    if (!m_isUserAsked) {
        QMetaObject::invokeMethod(
            this, [done = std::move(done)] { done(AuthorizationStatus::NotDetermined); },
            Qt::QueuedConnection);
        return;
    }
    service().askPermission(
        [done = std::move(done)](const Result<NotificationService::Permission> &permission) {
            const bool isGranted = permission == NotificationService::Permission::Granted;
            done(isGranted ? AuthorizationStatus::Authorized : AuthorizationStatus::Denied);
        });
}

void UserNotificationCenter::add(UserNotificationRequest request, Shown done)
{
    if (!done) {
        done = [](const std::optional<Error> &) {};
    }
    QMetaObject::invokeMethod(
        this,
        [this, request = std::move(request), done = std::move(done)]() mutable {
            present(request, std::move(done));
        },
        Qt::QueuedConnection);
}

void UserNotificationCenter::present(const UserNotificationRequest &request, Shown done)
{
    if (isWanted(request)) {
        service().show(request, std::move(done));
    } else {
        done(std::nullopt);
    }
}

bool UserNotificationCenter::isWanted(const UserNotificationRequest &request) const
{
    if (QGuiApplication::applicationState() != Qt::ApplicationActive) {
        return true;
    }
    UserNotificationCenterDelegate *const delegate = m_delegate.get();
    return delegate && delegate->willPresent(request).testFlag(PresentationOption::Banner);
}

void UserNotificationCenter::tellDelegate(const UserNotificationRequest &request) const
{
    if (UserNotificationCenterDelegate *const delegate = m_delegate.get()) {
        // No service waits for the action to be over.
        delegate->didReceive(request, [] {});
    }
}
