#pragma once

#include "Error.h"

#include <QByteArray>
#include <QUrl>

#include <optional>

/// Bookmarks of folders: bytes to keep, with which a folder is found again after it was renamed, and told
/// from another one that took its name.
///
/// The bytes hold path, file system, inode, birth time and, where the file system has one, the file handle;
/// they carry a version and a checksum, and nobody else looks inside. Any thread. Touches the disk; a
/// bookmark whose folder is where it was resolves in a few microseconds.
namespace Bookmark {

/// The domain of errors that are about the bytes and not about the file system.
inline const QString errorDomain = QStringLiteral("DeskbroomBookmarkErrorDomain");

enum ErrorCode {
    /// Not a bookmark, or damaged.
    Damaged = 1,
    /// Made by a newer version of this program.
    NewerVersion = 2,
};

/// How the program came to know the folder.
enum class Origin { Automatic, PickedByUser };

struct ResolvedBookmark {
    QUrl url;
    /// The folder has another name now, or another folder has the name: time to make a new bookmark.
    bool isStale = false;
    bool pickedByUser = false;
};

/// Cocoa error 4 if there is no such folder.
[[nodiscard]] Result<QByteArray> make(const QUrl &folder, Origin origin);

/// Finds the folder: first at its path; then where the access that the program keeps says that it was moved,
/// but not in the Trash; then under another name in the folder that it was in (among the first 10,000
/// entries). If it is nowhere, or wasn't picked by the user, the folder that has its name now is taken. Cocoa
/// error 4 if there is none.
[[nodiscard]] Result<ResolvedBookmark> resolve(const QByteArray &bookmark);

/// The folder if the user picked it: where `resolve` finds it, or where it was if it can't be found now (it
/// may be on a drive that comes back). Empty for a folder that wasn't picked and for bytes that are no
/// bookmark.
[[nodiscard]] std::optional<QUrl> pickedFolder(const QByteArray &bookmark);

/// How the folder became known; `Automatic` for bytes that are no bookmark.
[[nodiscard]] Origin origin(const QByteArray &bookmark);

} // namespace Bookmark
