#pragma once

#include "ObservableObject.h"

#include <QString>

#include <memory>
#include <optional>
#include <unordered_map>

class DelayedWork;
class SecurityScopedAccess;
class UserDefaults;

/// Carries out what the user decided about a screenshot: deletes it now or later, or copies it to the
/// clipboard.
///
/// Deleting always means moving to the Trash. At most one deletion is pending per path; pending ones live in
/// memory only and go with the program. A failure is printed and posted as "screenshotDeletionFailed". Made
/// once by the application delegate; main thread.
class ScreenshotManager final : public ObservableObject {
    Q_OBJECT

public:
    explicit ScreenshotManager(QObject *parent = nullptr);
    ~ScreenshotManager() override;
    Q_DISABLE_COPY_MOVE(ScreenshotManager)

    /// Posted without a sender when a deletion fails; the user info holds two strings, "error" (a sentence)
    /// and "path" (the full path).
    static inline const QString screenshotDeletionFailed = QStringLiteral("screenshotDeletionFailed");

    /// Whether every newly reported screenshot is to be copied: read from the preferences once.
    [[nodiscard]] bool autoCopyToClipboard() const { return m_autoCopyToClipboard.get(); }

    void setAutoCopyToClipboard(bool isOn) { m_autoCopyToClipboard.set(isOn); }

    /// Where a change of `autoCopyToClipboard` is to be written.
    [[nodiscard]] UserDefaults &preferences() const { return *m_preferences; }

    [[nodiscard]] bool hasPendingDeletion(const QString &path) const;

    [[nodiscard]] size_t pendingDeletionCount() const { return m_pendingDeletions.size(); }

    /// Deletes the file after `minutes`, instead of what was scheduled for it before. 0 and below: on the
    /// next turn of the loop. A number of minutes whose seconds overflow stops the program.
    void scheduleDeletion(const QString &path, qint64 minutes);

    /// The file is kept. Without a pending deletion, nothing happens.
    void cancelDeletion(const QString &path);

    /// Moves what lies at the path to the Trash, in the background, and cancels what is pending for it.
    void performDeletion(const QString &path);

    /// Puts the image on the pasteboard. One that doesn't load is printed and leaves the pasteboard as it is.
    void copyToClipboard(const QString &path) const;

Q_SIGNALS:
    /// A deletion has ended: in the Trash or failed.
    void didFinishDeletion(const QString &path);

private:
    [[nodiscard]] std::optional<SecurityScopedAccess> startDesktopAccess() const;
    void finishDeletion(const QString &path, const std::optional<QString> &failure);

    Published<bool> m_autoCopyToClipboard;
    std::unordered_map<QString, std::unique_ptr<DelayedWork>> m_pendingDeletions;
    UserDefaults *m_preferences;
};
