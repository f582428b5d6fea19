#include "RecordingFileChooser.h"

#include <QDBusArgument>
#include <QDBusObjectPath>
#include <QDBusVariant>

#include <utility>

namespace {

const QString service = QStringLiteral("org.freedesktop.portal.Desktop");
const QString objectPath = QStringLiteral("/org/freedesktop/portal/desktop");

QDBusConnection newConnection()
{
    static int number = 0;
    return QDBusConnection::connectToBus(
        QDBusConnection::SessionBus, QStringLiteral("recording-file-chooser-%1").arg(++number));
}

} // namespace

RecordingFileChooser::RecordingFileChooser(uint version, Manner manner)
    : m_bus(newConnection()),
      m_version(version),
      m_manner(manner)
{
    if (!m_bus.registerVirtualObject(objectPath, this, QDBusConnection::SubPath) ||
        !m_bus.registerService(service)) {
        qFatal("There is a portal on the bus of the test already, or no bus");
    }
}

RecordingFileChooser::~RecordingFileChooser()
{
    QDBusConnection::disconnectFromBus(m_bus.name());
}

QString RecordingFileChooser::introspect(const QString & /*path*/) const
{
    return {};
}

bool RecordingFileChooser::handleMessage(const QDBusMessage &message, const QDBusConnection & /*connection*/)
{
    if (message.member() == QStringLiteral("Get")) {
        ++m_versionReads;
        m_bus.send(message.createReply(QVariant::fromValue(QDBusVariant(m_version))));
    } else if (message.member() == QStringLiteral("OpenFile")) {
        takeQuestion(message);
    } else if (message.member() == QStringLiteral("Close")) {
        m_closedRequests.append(message.path());
        m_bus.send(message.createReply());
    } else {
        return false;
    }
    return true;
}

void RecordingFileChooser::takeQuestion(const QDBusMessage &message)
{
    const QVariantList arguments = message.arguments();
    const auto options = qdbus_cast<QVariantMap>(arguments.at(2));
    m_questions.append(
        {.parentWindow = arguments.at(0).toString(),
         .title = arguments.at(1).toString(),
         .options = options});
    QString sender = message.service().mid(1);
    sender.replace(u'.', u'_');
    const QString token = m_handle == Handle::FromToken
                              ? options.value(QStringLiteral("handle_token")).toString()
                              : QStringLiteral("t%1").arg(m_questions.size());
    m_request = objectPath + QStringLiteral("/request/") + sender + u'/' + token;
    switch (m_manner) {
    case Manner::Accepts:
        m_bus.send(message.createReply(QVariant::fromValue(QDBusObjectPath(m_request))));
        return;
    case Manner::Refuses:
        m_bus.send(message.createErrorReply(
            QStringLiteral("org.freedesktop.portal.Error.NotAllowed"), QStringLiteral("Not now")));
        return;
    case Manner::KeepsSilent:
        return;
    }
}

void RecordingFileChooser::respond(Response response, const QStringList &uris)
{
    QVariantMap results;
    if (!uris.isEmpty()) {
        results.insert(QStringLiteral("uris"), uris);
    }
    QDBusMessage signal = QDBusMessage::createSignal(
        m_request, QStringLiteral("org.freedesktop.portal.Request"), QStringLiteral("Response"));
    signal << std::to_underlying(response) << results;
    m_bus.send(signal);
}
