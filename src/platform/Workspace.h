#pragma once

#include <QList>
#include <QUrl>

#include <functional>

/// Opens what belongs to other programs. They live on without us. Main thread.
class Workspace final {
public:
    static Workspace &shared();

    /// A link `x-apple.systempreferences:` opens the pane of the running desktop's settings that is like the
    /// one it names: `com.apple.preference.security?Privacy_AllFiles` the one about privacy,
    /// `com.apple.preference.notifications` the one with this program's notifications, any other the settings
    /// as such. Where the desktop has no program for it, the program's own settings take its place.
    ///
    /// Every other URL goes to the desktop's program for it.
    ///
    /// Answers whether something was started; what becomes of it isn't waited for. A failure prints one line,
    /// "Failed to open System Settings: …" or "Failed to open <url>: …".
    bool open(const QUrl &url);

    /// Shows these files in the desktop's file manager, selected in their folders, and brings it to the
    /// front. A file manager that can't do that, or that doesn't answer within ten seconds, shows the
    /// folders instead.
    ///
    /// Answers whether somebody was asked. A URL that isn't a local file is left out and prints one
    /// line, "Failed to show <url>: …", and so does a failure that is seen at once or later.
    bool activateFileViewerSelecting(const QList<QUrl> &urls);

    /// What shows this program's own settings, for desktops whose settings aren't known or not installed;
    /// null: nothing does.
    void setOwnSettings(std::function<void()> show);

private:
    Workspace() = default;
    [[nodiscard]] bool openSystemSettings(const QUrl &link) const;

    std::function<void()> m_ownSettings;
};
