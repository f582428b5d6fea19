#pragma once

#include <QObject>

#include <memory>

class QSocketNotifier;

/// Lets SIGTERM, SIGINT and SIGHUP end the event loop instead of the process, so that everything is put away
/// as when the user quits. Made in `main` after the application object and kept until the end.
///
/// The signals have handlers and are neither blocked nor ignored: programs that are started from here inherit
/// a mask and what is ignored, but no handlers.
class TerminationSignals final : public QObject {
    Q_OBJECT

public:
    /// Called first in `main`. From here on the signals wait for an object of this class; and SIGPIPE (a
    /// closed output) and SIGIO (a broken lease) do no harm.
    static void install();

    explicit TerminationSignals(QObject *parent = nullptr);
    ~TerminationSignals() override;
    Q_DISABLE_COPY_MOVE(TerminationSignals)

private:
    void quit();

    std::unique_ptr<QSocketNotifier> m_notifier;
};
