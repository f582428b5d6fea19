#pragma once

#include <QDBusConnection>
#include <QDBusContext>
#include <QDBusMessage>
#include <QList>
#include <QMap>
#include <QObject>
#include <QStringList>
#include <QVariantMap>

/// A notification server for tests, on a connection of its own: it records what it is told to show, answers
/// as it is told to, and reports clicks as desktops do. It counts from 1, as every server that has just been
/// started does, and takes a replaced notification's number for the new one while that is still shown.
class RecordingNotificationServer : public QObject, protected QDBusContext {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.freedesktop.Notifications")

public:
    /// What a call of `Notify` came with.
    struct Notification {
        QString application;
        uint replacedNumber = 0;
        QString icon;
        QString title;
        QString body;
        QStringList actions;
        QVariantMap hints;
        int expireTimeout = 0;
        /// What the server answers.
        uint number = 0;
    };

    enum class Answer { AtOnce, WhenReleased, Never, Error, Nonsense };

    /// Owns `org.freedesktop.Notifications` on that bus from now until it is destroyed.
    explicit RecordingNotificationServer(
        const QString &busAddress, QStringList capabilities = {QStringLiteral("body-markup")});
    ~RecordingNotificationServer() override;
    Q_DISABLE_COPY_MOVE(RecordingNotificationServer)

    void setAnswer(Answer answer) { m_answer = answer; }

    void setCapabilitiesAnswer(Answer answer) { m_capabilitiesAnswer = answer; }

    /// Answers what waits for it.
    void release();

    [[nodiscard]] const QList<Notification> &notifications() const { return m_notifications; }

    /// The notifications that the user sees now, in the order of their numbers.
    [[nodiscard]] QList<Notification> shown() const { return m_shown.values(); }

    [[nodiscard]] int capabilitiesQuestions() const { return m_capabilitiesQuestions; }

    void click(uint number, const QString &action = QStringLiteral("default"));
    void close(uint number);
    void giveActivationToken(uint number, const QString &token);
    void sendSignal(const QString &name, const QVariantList &arguments);

    /// It is no longer shown, and nobody is told.
    void forget(uint number) { m_shown.remove(number); }

    Q_SCRIPTABLE QStringList GetCapabilities();
    Q_SCRIPTABLE uint Notify(
        const QString &app_name, uint replaces_id, const QString &app_icon, const QString &summary,
        const QString &body, const QStringList &actions, const QVariantMap &hints, int expire_timeout);

private:
    void answerAs(Answer answer);

    QDBusConnection m_bus;
    QStringList m_capabilities;
    Answer m_answer = Answer::AtOnce;
    Answer m_capabilitiesAnswer = Answer::AtOnce;
    int m_capabilitiesQuestions = 0;
    uint m_lastNumber = 0;
    QList<Notification> m_notifications;
    QMap<uint, Notification> m_shown;
    QList<QDBusMessage> m_held;
};
