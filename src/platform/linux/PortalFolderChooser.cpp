#include "PortalFolderChooser.h"

#include "print.h"

#include <QDBusObjectPath>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QDBusServiceWatcher>
#include <QDBusVariant>
#include <QFile>
#include <QRandomGenerator>

#include <utility>

namespace {

const QString service = QStringLiteral("org.freedesktop.portal.Desktop");
const QString objectPath = QStringLiteral("/org/freedesktop/portal/desktop");
const QString chooserInterface = QStringLiteral("org.freedesktop.portal.FileChooser");
const QString requestInterface = QStringLiteral("org.freedesktop.portal.Request");
const QString responseSignal = QStringLiteral("Response");

/// The first version that knows the option `directory`.
constexpr uint versionWithFolders = 3;

/// The values of the signal `Response`.
constexpr uint responseSuccess = 0;
constexpr uint responseCancelled = 1;

QDBusMessage chooserMethod(const QString &interface, const QString &method)
{
    return QDBusMessage::createMethodCall(service, objectPath, interface, method);
}

/// A path as the portal's options want it: the file system's bytes, with a zero at the end.
QByteArray pathBytes(const QUrl &folder)
{
    QByteArray bytes = QFile::encodeName(folder.toLocalFile());
    bytes.append('\0');
    return bytes;
}

} // namespace

PortalFolderChooser::PortalFolderChooser(QObject *parent)
    : QObject(parent),
      m_bus(QDBusConnection::sessionBus()),
      m_token(QStringLiteral("deskbroom%1").arg(QRandomGenerator::global()->generate64()))
{
}

PortalFolderChooser::~PortalFolderChooser()
{
    if (m_state == State::Opening || m_state == State::Shown) {
        closeRequest();
    }
}

/// `done` gets the finished reply, unless this is gone or finished by then.
template <typename... Types, typename Done>
void PortalFolderChooser::call(const QDBusMessage &message, Done done)
{
    auto *const watcher = new QDBusPendingCallWatcher(m_bus.asyncCall(message, answerMilliseconds), this);
    connect(
        watcher, &QDBusPendingCallWatcher::finished, this,
        [this, done = std::move(done)](QDBusPendingCallWatcher *finished) {
            finished->deleteLater();
            if (m_state != State::Finished) {
                done(QDBusPendingReply<Types...>(*finished));
            }
        });
}

void PortalFolderChooser::open(const Question &question)
{
    m_question = question;
    if (!m_bus.isConnected()) {
        fail();
        return;
    }
    m_state = State::AskingVersion;
    QDBusMessage get =
        chooserMethod(QStringLiteral("org.freedesktop.DBus.Properties"), QStringLiteral("Get"));
    get << chooserInterface << QStringLiteral("version");
    call<QDBusVariant>(get, [this](const QDBusPendingReply<QDBusVariant> &reply) {
        if (reply.isValid() && reply.value().variant().toUInt() >= versionWithFolders) {
            askToOpen();
        } else {
            fail();
        }
    });
}

void PortalFolderChooser::askToOpen()
{
    m_state = State::Opening;
    // Before the question, or else a quick answer could be missed.
    listenTo(expectedRequest());
    const auto *const owners =
        new QDBusServiceWatcher(service, m_bus, QDBusServiceWatcher::WatchForUnregistration, this);
    connect(owners, &QDBusServiceWatcher::serviceUnregistered, this, &PortalFolderChooser::fail);
    call<QDBusObjectPath>(openFile(), [this](const QDBusPendingReply<QDBusObjectPath> &reply) {
        if (!reply.isValid()) {
            // A portal that is only slow would show a second dialog later.
            closeRequest();
            fail();
            return;
        }
        m_state = State::Shown;
        // Portals before xdg-desktop-portal 0.9 make up a path of their own.
        if (reply.value().path() != m_request) {
            stopListening();
            listenTo(reply.value().path());
        }
    });
}

QDBusMessage PortalFolderChooser::openFile() const
{
    QVariantMap options = {
        {QStringLiteral("handle_token"), m_token},
        {QStringLiteral("modal"), false},
        {QStringLiteral("multiple"), false},
        {QStringLiteral("directory"), true},
    };
    if (!m_question.acceptLabel.isEmpty()) {
        // A single underline would mark the letter after it as a shortcut.
        QString label = m_question.acceptLabel;
        options.insert(
            QStringLiteral("accept_label"), label.replace(QStringLiteral("_"), QStringLiteral("__")));
    }
    if (m_question.folder.isLocalFile()) {
        options.insert(QStringLiteral("current_folder"), pathBytes(m_question.folder));
    }
    QDBusMessage message = chooserMethod(chooserInterface, QStringLiteral("OpenFile"));
    message << QString() << m_question.title << options;
    return message;
}

QString PortalFolderChooser::expectedRequest() const
{
    QString sender = m_bus.baseService().mid(1);
    sender.replace(u'.', u'_');
    return objectPath + QStringLiteral("/request/") + sender + u'/' + m_token;
}

void PortalFolderChooser::listenTo(const QString &request)
{
    m_request = request;
    // Without a sender's name, because the toolkit would wait for that name's owner here.
    m_bus.connect(
        QString(), m_request, requestInterface, responseSignal, this, SLOT(takeResponse(uint, QVariantMap)));
}

void PortalFolderChooser::stopListening()
{
    m_bus.disconnect(
        QString(), m_request, requestInterface, responseSignal, this, SLOT(takeResponse(uint, QVariantMap)));
    m_request.clear();
}

void PortalFolderChooser::closeRequest()
{
    QDBusMessage close =
        QDBusMessage::createMethodCall(service, m_request, requestInterface, QStringLiteral("Close"));
    close.setAutoStartService(false);
    m_bus.send(close);
}

void PortalFolderChooser::takeResponse(uint response, const QVariantMap &results)
{
    if (m_state == State::Finished) {
        return;
    }
    if (response != responseSuccess && response != responseCancelled) {
        // The desktop's part of the portal failed to show the dialog.
        fail();
        return;
    }
    m_state = State::Finished;
    stopListening();
    if (response == responseCancelled) {
        Q_EMIT cancelled();
        return;
    }
    const QString uri = results.value(QStringLiteral("uris")).toStringList().value(0);
    const QUrl folder = QUrl::fromEncoded(uri.toUtf8()).adjusted(QUrl::StripTrailingSlash);
    if (folder.isLocalFile()) {
        Q_EMIT chosen(folder);
    } else {
        print(QStringLiteral("Failed to choose a folder: it isn't a local one: ") + uri);
        Q_EMIT cancelled();
    }
}

void PortalFolderChooser::fail()
{
    if (m_state == State::Finished) {
        return;
    }
    m_state = State::Finished;
    if (!m_request.isEmpty()) {
        stopListening();
    }
    Q_EMIT unavailable();
}
