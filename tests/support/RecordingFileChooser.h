#pragma once

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusVirtualObject>
#include <QString>
#include <QStringList>
#include <QVariantMap>

/// A desktop portal for tests that can choose files, on a connection of its own to the session bus. It
/// records what it is asked and answers when the test says so.
class RecordingFileChooser final : public QDBusVirtualObject {
    Q_OBJECT

public:
    /// What becomes of a question.
    enum class Manner { Accepts, Refuses, KeepsSilent };

    /// The path of the request that a question gets: made of its token, or one of the portal's own, as old
    /// portals do it.
    enum class Handle { FromToken, OfItsOwn };

    struct Question {
        QString parentWindow;
        QString title;
        QVariantMap options;
    };

    /// The values of the signal `Response`.
    enum class Response : uint { Success = 0, Cancelled = 1, Other = 2 };

    /// Owns `org.freedesktop.portal.Desktop` from now until it is destroyed.
    explicit RecordingFileChooser(uint version = 3, Manner manner = Manner::Accepts);
    ~RecordingFileChooser() override;
    Q_DISABLE_COPY_MOVE(RecordingFileChooser)

    void setHandle(Handle handle) { m_handle = handle; }

    [[nodiscard]] const QList<Question> &questions() const { return m_questions; }

    /// How often its version was asked for.
    [[nodiscard]] int versionReads() const { return m_versionReads; }

    /// The paths of the requests that were closed.
    [[nodiscard]] QStringList closedRequests() const { return m_closedRequests; }

    /// The path of the last question's request.
    [[nodiscard]] QString request() const { return m_request; }

    /// Answers the last question.
    void respond(Response response, const QStringList &uris = {});

    [[nodiscard]] QString introspect(const QString &path) const override;
    bool handleMessage(const QDBusMessage &message, const QDBusConnection &connection) override;

private:
    void takeQuestion(const QDBusMessage &message);

    QDBusConnection m_bus;
    uint m_version;
    Manner m_manner;
    Handle m_handle = Handle::FromToken;
    QList<Question> m_questions;
    QStringList m_closedRequests;
    QString m_request;
    int m_versionReads = 0;
};
