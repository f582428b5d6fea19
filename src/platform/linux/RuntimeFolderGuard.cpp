#include "RuntimeFolderGuard.h"

#include "print.h"

#include <QSocketNotifier>

#include <fcntl.h>
#include <sys/file.h>
#include <sys/socket.h>
#include <sys/un.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstring>

namespace {

/// An empty path if the name doesn't fit.
sockaddr_un socketAddress(const QByteArray &path)
{
    sockaddr_un address = {};
    address.sun_family = AF_UNIX;
    if (static_cast<size_t>(path.size()) < sizeof address.sun_path) {
        std::ranges::copy(path, address.sun_path);
    }
    return address;
}

const sockaddr *generic(const sockaddr_un &address)
{
    return reinterpret_cast<const sockaddr *>(&address);
}

FileDescriptor newSocket()
{
    return FileDescriptor(::socket(AF_UNIX, SOCK_DGRAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0));
}

void sendActivation(const QByteArray &socketPath)
{
    const FileDescriptor socket = newSocket();
    const sockaddr_un address = socketAddress(socketPath);
    if (!socket.isValid() ||
        ::sendto(socket.get(), "", 1, MSG_NOSIGNAL, generic(address), sizeof address) < 0) {
        print(
            QStringLiteral("Failed to activate the running instance: ") +
            QString::fromLocal8Bit(std::strerror(errno)));
    }
}

} // namespace

RuntimeFolderGuard::RuntimeFolderGuard(QObject *parent) : QObject(parent)
{
}

RuntimeFolderGuard::~RuntimeFolderGuard() = default;

RuntimeFolderGuard::Outcome RuntimeFolderGuard::claim()
{
    const QByteArray folder = qgetenv("XDG_RUNTIME_DIR");
    if (folder.isEmpty()) {
        return Outcome::First;
    }
    const QByteArray base = folder + QByteArrayLiteral("/org.deskbroom.Deskbroom");
    const QByteArray socketPath = base + QByteArrayLiteral(".socket");
    const QByteArray lockPath = base + QByteArrayLiteral(".lock");
    m_lock = FileDescriptor(::open(lockPath.constData(), O_RDWR | O_CREAT | O_CLOEXEC | O_NOFOLLOW, 0600));
    if (!m_lock.isValid()) {
        return Outcome::First;
    }
    if (::flock(m_lock.get(), LOCK_EX | LOCK_NB) != 0 && errno == EWOULDBLOCK) {
        sendActivation(socketPath);
        return Outcome::HandedOver;
    }
    listen(socketPath);
    return Outcome::First;
}

void RuntimeFolderGuard::listen(const QByteArray &socketPath)
{
    const sockaddr_un address = socketAddress(socketPath);
    ::unlink(socketPath.constData()); // Left by one that crashed: the lock is ours.
    m_socket = newSocket();
    if (!m_socket.isValid() || ::bind(m_socket.get(), generic(address), sizeof address) != 0) {
        return;
    }
    m_notifier = std::make_unique<QSocketNotifier>(m_socket.get(), QSocketNotifier::Read);
    connect(m_notifier.get(), &QSocketNotifier::activated, this, &RuntimeFolderGuard::receive);
}

void RuntimeFolderGuard::receive()
{
    std::array<char, 16> message = {};
    if (::recv(m_socket.get(), message.data(), message.size(), 0) >= 0) {
        Q_EMIT activated();
    }
}
