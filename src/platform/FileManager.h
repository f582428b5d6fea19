#pragma once

#include "DirectoryState.h"
#include "Error.h"
#include "FileAttributes.h"
#include "FileState.h"
#include "FunctionRef.h"

#include <QByteArrayView>
#include <QDateTime>
#include <QList>
#include <QUrl>

#include <optional>

enum class SearchPathDirectory {
    /// A role rather than a folder: where the running session's capture tool saves its screenshots.
    Desktop,
    Pictures,
    Downloads,
};

/// The file system as this program needs it: standard folders, listings, attributes, the Trash.
///
/// Without state, so any thread may call it at any time; whatever touches the disk may take as long as the
/// disk takes. Failures of the file system are Cocoa errors (see `Error`): 4 for what isn't there, 257 for
/// what may not be read.
class FileManager final {
public:
    enum class ListingOption {
        None,
        /// Leaves out the entries whose name begins with a dot.
        SkipsHiddenFiles,
    };

    /// Called with the name of one entry: its raw bytes, which needn't be UTF-8, valid during the call.
    using EntryVisitor = FunctionRef<void(QByteArrayView name)>;

    [[nodiscard]] static const FileManager &defaultManager();

    /// The preference that holds the bookmark of the folder that the program works with; if the user picked
    /// that folder, it has the role of the Desktop.
    static inline const QString folderBookmarkPreference = QStringLiteral("DesktopFolderBookmark");

    /// The user's own folder of that kind, as the XDG user directories name it at this moment, whether it
    /// exists or not. Empty if it can't be located: the user switched it off by setting it to the home
    /// folder itself.
    ///
    /// *Desktop* is the folder that the user picked, if he did; else the one in which the session's capture
    /// tool saves by itself (docs/capture-tools.md); the user's desktop folder where no tool is known or the
    /// tool has none.
    [[nodiscard]] QList<QUrl> urls(SearchPathDirectory directory) const;

    /// Makes the folder in the role *Desktop* if it is missing and the capture tool would make it with its
    /// next screenshot. Whether that worked shows when it is listed.
    void makeDesktop() const;

    /// Whether the role *Desktop* is held by another folder than the user's desktop folder, compared as
    /// cleaned paths. Decides whether a text may call it the "Desktop folder". Costs the same as `urls`.
    [[nodiscard]] bool isDesktopElsewhere() const;

    /// Hands the folder's entries to `visitor` in the order in which the file system lists them; `.` and
    /// `..` are never among them. Returns the folder's state as it was just before the listing. When it
    /// fails midway, some entries were already handed over.
    [[nodiscard]] Result<DirectoryState>
    contentsOfDirectory(const QString &path, ListingOption option, EntryVisitor visitor) const;

    /// The folder's state now, for `isUnchangedSince`. About a microsecond on a local file system.
    [[nodiscard]] Result<DirectoryState> directoryState(const QString &path) const;

    [[nodiscard]] Result<FileAttributes> attributesOfItem(const QString &path) const;

    /// Of the file at the path or behind a symbolic link there.
    [[nodiscard]] Result<FileState> fileState(const QString &path) const;

    /// The same date as `FileAttributes::creationDate`.
    [[nodiscard]] Result<std::optional<QDateTime>> creationDate(const QUrl &url) const;

    /// Whether another process has the regular file open for writing. A file that isn't the user's own, or
    /// lies where the question can't be asked (network mounts), counts as finished: false.
    [[nodiscard]] bool isOpenForWriting(const QString &path) const;

    /// Moves the item to the Trash of its volume, a symbolic link as itself. It is never copied and never
    /// deleted for good: where it can't be moved it stays, and the error says why. The thumbnails of it that
    /// the desktop's programs share go.
    [[nodiscard]] Result<void> trashItem(const QUrl &url) const;

private:
    FileManager() = default;
};
