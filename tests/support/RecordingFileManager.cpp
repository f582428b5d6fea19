#include "RecordingFileManager.h"

#include <QDBusError>
#include <QDBusMessage>

RecordingFileManager::RecordingFileManager(Manner manner)
    : m_bus(QDBusConnection::connectToBus(QDBusConnection::SessionBus, QStringLiteral("files"))),
      m_manner(manner)
{
    m_bus.registerVirtualObject(QStringLiteral("/org/freedesktop/FileManager1"), this);
    m_bus.registerService(QStringLiteral("org.freedesktop.FileManager1"));
}

RecordingFileManager::~RecordingFileManager()
{
    QDBusConnection::disconnectFromBus(QStringLiteral("files"));
}

bool RecordingFileManager::handleMessage(const QDBusMessage &message, const QDBusConnection & /*connection*/)
{
    // Not answered, as by every other service, if the types are wrong.
    if (message.signature() != QLatin1String("ass")) {
        return false;
    }
    m_shown = QStringList(message.member()) + message.arguments().constFirst().toStringList();
    m_hasAnswered = m_bus.send(
        m_manner == Manner::Shows ? message.createReply()
                                  : message.createErrorReply(QDBusError::Failed, QStringLiteral("No")));
    return true;
}
