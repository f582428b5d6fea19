#pragma once

#include "FileManager.h"
#include "ObservableObject.h"
#include "ScreenshotItem.h"

#include <QByteArray>
#include <QList>
#include <QPointer>
#include <QTimer>
#include <QUrl>

#include <functional>
#include <optional>

class OpenPanel;

/// Holds the right to read the watched folder: keeps its bookmark in the preferences, holds access to it from
/// launch to termination, asks the user for another folder, checks that access really works, and lists
/// folders for the gallery.
///
/// There is one, made at launch. Main thread, but for what says otherwise. Failures are printed, and where
/// the user must act, a notification says so.
class FileAccessManager final : public ObservableObject {
    Q_OBJECT

public:
    /// The process notification that a folder was picked and can be read; posted on the main thread without
    /// user info.
    static inline const QString folderAccessGranted = QStringLiteral("folderAccessGranted");

    /// Made on first use, which checks the Desktop, makes or renews its bookmark and holds access. Lives as
    /// long as the process.
    static FileAccessManager &shared();

    /// One of its own, for tests.
    FileAccessManager();

    /// Holds access to the bookmarked folder, if it doesn't already.
    void startPersistentAccess();
    void stopPersistentAccess();

    /// Where access is held; empty while none is.
    [[nodiscard]] const std::optional<QUrl> &persistentAccessUrl() const { return m_persistentAccessUrl; }

    /// Shows the folder picker soon, and returns at once. It starts in the watched folder, or elsewhere if
    /// that one's disk takes more than half a second to answer. A picker that is open already gives way to
    /// the new one.
    void requestFolderAccess();

    /// Takes over a folder that the user picked, partly in the background. The last of several picks counts.
    void handleSelectedFolder(const QUrl &url);

    /// Whether there is a bookmark, of whatever it is. Any thread; costs a look into the preferences.
    [[nodiscard]] bool hasBookmark() const { return bookmark().has_value(); }

    /// As it is stored. Any thread.
    [[nodiscard]] std::optional<QByteArray> bookmark() const;

    /// Whether the bookmarked folder can be listed at this moment. Any thread; blocks for as long as the
    /// folder's file system takes.
    [[nodiscard]] bool hasValidAccess() const;

    /// Lists the bookmarked folder and then these folders, each folder once, in the background, and calls
    /// `done` on the main thread with what was found, newest first, unless `owner` is gone by then.
    void loadScreenshots(
        const QList<SearchPathDirectory> &directories, QObject *owner,
        std::function<void(QList<ScreenshotItem>)> done) const;

private:
    void checkInitialAccess();
    void touchOtherFolders() const;
    void createBookmark(const QUrl &url);
    void takeStart(const QUrl &directory);
    void showOpenPanel(const QUrl &directory);
    void takeOver(quint64 pick, const QUrl &url, const QByteArray &bookmark);

    const FileManager *m_fileManager;
    QString m_bookmarkKey;
    std::optional<QUrl> m_persistentAccessUrl;

    QPointer<OpenPanel> m_openPanel;
    /// Runs from a request until its panel opens.
    QTimer m_openPanelTimer;
    bool m_isLookingForStart = false;
    /// How many folders the user has picked in this run.
    quint64 m_picks = 0;
};
