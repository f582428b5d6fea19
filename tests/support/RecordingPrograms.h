#pragma once

#include <QByteArray>
#include <QString>

/// Programs on a search path of a test's own, which has no others: each writes down how it was started. The
/// search path is as it was when the object goes.
class RecordingPrograms final {
public:
    /// Under `home`, which has to be there.
    explicit RecordingPrograms(const QString &home);
    ~RecordingPrograms();
    Q_DISABLE_COPY_MOVE(RecordingPrograms)

    /// Where the programs are.
    [[nodiscard]] QString folder() const { return m_home + QStringLiteral("/bin"); }

    /// What the programs write; none before the first one was started.
    [[nodiscard]] QString log() const { return m_home + QStringLiteral("/started"); }

    /// It runs `pages` when it is started with `--list`.
    void install(const QString &name, const QByteArray &pages = QByteArrayLiteral("exit 1")) const;

    /// The one that was started last: its name and its arguments, with a bar behind each, and a line break.
    [[nodiscard]] QByteArray started() const;

private:
    const QString m_home;
    const QByteArray m_pathBefore = qgetenv("PATH");
};
