#pragma once

#include <QByteArray>
#include <QObject>

#include <optional>

class FileAccessManager;

/// Finds out whether the watched folder can be read, without waiting for its disk: the last answer stands
/// until the next one arrives, which from a dead network mount is never.
///
/// One question about a folder is under way at a time, whichever check asks; those asked meanwhile follow it.
/// That a folder has been granted is an answer, and a reason to ask. Main thread.
class FolderAccessCheck final : public QObject {
    Q_OBJECT

public:
    /// The manager has to live as long as the process, because questions outlive their check.
    explicit FolderAccessCheck(const FileAccessManager &manager, QObject *parent = nullptr);

    /// None until the first one.
    [[nodiscard]] std::optional<bool> lastAnswer() const { return m_lastAnswer; }

    /// Answered in the background; at once if no folder was ever granted.
    void ask();

Q_SIGNALS:
    /// There is an answer, be it the same as before: it may be about another folder.
    void answered();

    /// The answer is another one than before.
    void changed();

private:
    void begin(const QByteArray &bookmark);
    void finish(const QByteArray &bookmark, bool hasAccess);
    void take(bool hasAccess);

    const FileAccessManager *m_manager;
    std::optional<bool> m_lastAnswer;
    /// The bookmark that the question under way is about.
    std::optional<QByteArray> m_askedAbout;
    /// Asked while a question was under way, whose answer may be older than the reason for asking.
    bool m_isAskedAgain = false;
};
