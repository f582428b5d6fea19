#pragma once

#include <QDBusConnection>
#include <QDBusVirtualObject>
#include <QStringList>

/// A file manager on a connection of its own that records what it is asked to show.
class RecordingFileManager final : public QDBusVirtualObject {
    Q_OBJECT

public:
    enum class Manner { Shows, Refuses };

    explicit RecordingFileManager(Manner manner);
    ~RecordingFileManager() override;
    Q_DISABLE_COPY_MOVE(RecordingFileManager)

    /// The method and the URIs that it was called with.
    [[nodiscard]] QStringList shown() const { return m_shown; }

    [[nodiscard]] bool hasAnswered() const { return m_hasAnswered; }

    [[nodiscard]] QString introspect(const QString & /*path*/) const override { return {}; }

    bool handleMessage(const QDBusMessage &message, const QDBusConnection &connection) override;

private:
    QDBusConnection m_bus;
    Manner m_manner;
    QStringList m_shown;
    bool m_hasAnswered = false;
};
