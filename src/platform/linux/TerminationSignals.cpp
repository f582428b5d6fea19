#include "TerminationSignals.h"

#include <QCoreApplication>
#include <QSocketNotifier>

#include <sys/eventfd.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>

namespace {

/// Readable from the first signal on. A handler can reach nothing but a global.
int signalled = -1;

void noteTermination(int)
{
    const int previousError = errno;
    const eventfd_t one = 1;
    [[maybe_unused]] const ssize_t written = ::write(signalled, &one, sizeof one);
    errno = previousError;
}

void doNothing(int)
{
}

void setHandler(int signalNumber, void (*handler)(int))
{
    struct sigaction action = {};
    action.sa_handler = handler;
    action.sa_flags = SA_RESTART;
    sigemptyset(&action.sa_mask);
    sigaction(signalNumber, &action, nullptr);
}

} // namespace

void TerminationSignals::install()
{
    signalled = ::eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK);
    if (signalled >= 0) {
        for (const int signalNumber : {SIGTERM, SIGINT, SIGHUP}) {
            setHandler(signalNumber, noteTermination);
        }
    }
    setHandler(SIGPIPE, doNothing);
    setHandler(SIGIO, doNothing);
}

TerminationSignals::TerminationSignals(QObject *parent) : QObject(parent)
{
    if (signalled >= 0) {
        m_notifier = std::make_unique<QSocketNotifier>(signalled, QSocketNotifier::Read);
        connect(m_notifier.get(), &QSocketNotifier::activated, this, &TerminationSignals::quit);
    }
}

TerminationSignals::~TerminationSignals() = default;

void TerminationSignals::quit()
{
    eventfd_t count = 0;
    ::eventfd_read(signalled, &count);
    QCoreApplication::quit();
}
