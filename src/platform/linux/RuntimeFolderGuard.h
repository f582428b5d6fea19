#pragma once

#include "FileDescriptor.h"

#include <QObject>

#include <memory>

class QSocketNotifier;

/// One instance for a session that has no bus: the first one holds a lock in XDG_RUNTIME_DIR and listens on a
/// socket beside it, where any message means "show yourself". The system frees both when the process ends,
/// however it ends.
class RuntimeFolderGuard final : public QObject {
    Q_OBJECT

public:
    enum class Outcome {
        /// Nobody else holds the lock, or it can't be told.
        First,
        /// Another process holds the lock and has been sent a message.
        HandedOver,
    };

    explicit RuntimeFolderGuard(QObject *parent = nullptr);
    ~RuntimeFolderGuard() override;
    Q_DISABLE_COPY_MOVE(RuntimeFolderGuard)

    [[nodiscard]] Outcome claim();

Q_SIGNALS:
    void activated();

private:
    void listen(const QByteArray &socketPath);
    void receive();

    FileDescriptor m_lock;
    FileDescriptor m_socket;
    std::unique_ptr<QSocketNotifier> m_notifier;
};
