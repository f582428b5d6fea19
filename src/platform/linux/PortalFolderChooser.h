#pragma once

#include <QDBusConnection>
#include <QDBusMessage>
#include <QObject>
#include <QString>
#include <QUrl>
#include <QVariantMap>

/// Asks for one folder through `org.freedesktop.portal.FileChooser`, which shows the desktop's own dialog in
/// a process of the desktop's. Nothing is waited for. Folders can be asked for from version 3 of the portal
/// on.
///
/// Ends with one of its signals, once. Destroying it before that closes the dialog. GUI thread; for one
/// question.
class PortalFolderChooser final : public QObject {
    Q_OBJECT

public:
    struct Question {
        QString title;
        QString acceptLabel;
        /// Where the dialog starts; empty: where the desktop thinks best.
        QUrl folder;
    };

    /// How long the portal may take to say which version it is, and then to take the question.
    static constexpr int answerMilliseconds = 3000;

    explicit PortalFolderChooser(QObject *parent = nullptr);
    ~PortalFolderChooser() override;
    Q_DISABLE_COPY_MOVE(PortalFolderChooser)

    /// Called once. Without a session bus, `unavailable` comes from within this call.
    void open(const Question &question);

Q_SIGNALS:
    /// The URL of a local folder, without a slash at its end.
    void chosen(const QUrl &folder);
    void cancelled();
    /// The portal is missing, too old, silent, refuses, or went away with its dialog.
    void unavailable();

private Q_SLOTS:
    void takeResponse(uint response, const QVariantMap &results);

private:
    enum class State { Idle, AskingVersion, Opening, Shown, Finished };

    template <typename... Types, typename Done> void call(const QDBusMessage &message, Done done);
    [[nodiscard]] QDBusMessage openFile() const;
    [[nodiscard]] QString expectedRequest() const;
    void askToOpen();
    void listenTo(const QString &request);
    void stopListening();
    void closeRequest();
    void fail();

    QDBusConnection m_bus;
    Question m_question;
    QString m_token;
    /// The object path of the running request, which the answer comes from; empty while there is none.
    QString m_request;
    State m_state = State::Idle;
};
