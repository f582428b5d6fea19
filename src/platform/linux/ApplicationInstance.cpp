#include "ApplicationInstance.h"

#include "FreedesktopApplication.h"
#include "RuntimeFolderGuard.h"
#include "print.h"

#include <QDBusConnection>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>

#include <utility>

namespace {

constexpr int handOverMilliseconds = 5000;
/// The first instance may end just before it is told: then this one asks for the name again.
constexpr int mostAttempts = 2;

QDBusMessage callToBus(const QString &method)
{
    return QDBusMessage::createMethodCall(
        QStringLiteral("org.freedesktop.DBus"), QStringLiteral("/org/freedesktop/DBus"),
        QStringLiteral("org.freedesktop.DBus"), method);
}

bool hasLeftTheBus(const QDBusError &error)
{
    return error.type() == QDBusError::ServiceUnknown ||
           error.name() == QLatin1String("org.freedesktop.DBus.Error.NameHasNoOwner") ||
           error.type() == QDBusError::NoReply;
}

} // namespace

ApplicationInstance::ApplicationInstance(QObject *parent) : QObject(parent)
{
    auto *const application = new FreedesktopApplication(this);
    connect(application, &FreedesktopApplication::activated, this, &ApplicationInstance::activated);
}

ApplicationInstance::~ApplicationInstance()
{
    if (m_attempts > 0) {
        QDBusConnection bus = QDBusConnection::sessionBus();
        bus.unregisterObject(FreedesktopApplication::objectPath);
        bus.send(callToBus(QStringLiteral("ReleaseName")) << FreedesktopApplication::busName);
    }
}

void ApplicationInstance::claim(std::function<void(Role)> decided)
{
    m_decided = std::move(decided);
    QDBusConnection bus = QDBusConnection::sessionBus();
    if (!bus.isConnected()) {
        claimInRuntimeFolder();
        return;
    }
    // First the object, then the name: who finds the name finds somebody who answers.
    bus.registerObject(FreedesktopApplication::objectPath, this, QDBusConnection::ExportAdaptors);
    requestName();
}

/// As a message of its own because QDBusConnection::registerService waits for the answer.
void ApplicationInstance::requestName()
{
    constexpr uint doNotQueue = 4;
    ++m_attempts;
    const QDBusMessage message = callToBus(QStringLiteral("RequestName"))
                                 << FreedesktopApplication::busName << doNotQueue;
    auto *const call = new QDBusPendingCallWatcher(QDBusConnection::sessionBus().asyncCall(message), this);
    connect(call, &QDBusPendingCallWatcher::finished, this, &ApplicationInstance::takeNameAnswer);
}

void ApplicationInstance::takeNameAnswer(QDBusPendingCallWatcher *call)
{
    constexpr uint someoneElseIsOwner = 3;
    call->deleteLater();
    const QDBusPendingReply<uint> reply = *call;
    if (reply.isError()) {
        claimInRuntimeFolder();
    } else if (reply.value() == someoneElseIsOwner) {
        handOver();
    } else {
        decide(Role::First);
    }
}

void ApplicationInstance::handOver()
{
    QDBusMessage message = QDBusMessage::createMethodCall(
        FreedesktopApplication::busName, FreedesktopApplication::objectPath,
        FreedesktopApplication::interfaceName, QStringLiteral("Activate"));
    message << FreedesktopApplication::platformData();
    message.setAutoStartService(false);
    auto *const call = new QDBusPendingCallWatcher(
        QDBusConnection::sessionBus().asyncCall(message, handOverMilliseconds), this);
    connect(call, &QDBusPendingCallWatcher::finished, this, &ApplicationInstance::takeHandOverAnswer);
}

void ApplicationInstance::takeHandOverAnswer(QDBusPendingCallWatcher *call)
{
    call->deleteLater();
    if (call->isError() && hasLeftTheBus(call->error()) && m_attempts < mostAttempts) {
        requestName();
        return;
    }
    if (call->isError()) {
        print(QStringLiteral("Failed to activate the running instance: ") + call->error().message());
    }
    decide(Role::HandedOver);
}

void ApplicationInstance::claimInRuntimeFolder()
{
    m_guard = std::make_unique<RuntimeFolderGuard>();
    connect(m_guard.get(), &RuntimeFolderGuard::activated, this, &ApplicationInstance::activated);
    const bool isFirst = m_guard->claim() == RuntimeFolderGuard::Outcome::First;
    const auto decideRole = [this, isFirst] { decide(isFirst ? Role::First : Role::HandedOver); };
    QMetaObject::invokeMethod(this, decideRole, Qt::QueuedConnection);
}

void ApplicationInstance::decide(Role role)
{
    const auto decided = std::exchange(m_decided, nullptr);
    decided(role);
}
