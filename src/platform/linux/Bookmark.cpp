#include "Bookmark.h"

#include "BookmarkData.h"
#include "DirectoryEntries.h"
#include "FileDescriptor.h"
#include "FileStatus.h"
#include "SecurityScopedAccess.h"

#include <QDir>
#include <QFile>

#include <cerrno>
#include <tuple>

namespace {

/// So many entries of the parent are looked at when a folder isn't at its path any more.
constexpr int mostSiblings = 10'000;

Result<FolderIdentity> identify(const FileDescriptor &folder)
{
    if (!folder.isValid()) {
        return std::unexpected(Error::fromErrno(errno, Error::FileReadUnknown));
    }
    return FolderIdentity::ofDescriptor(folder.get());
}

Result<FolderIdentity> folderAt(const QByteArray &path)
{
    return identify(FileDescriptor(::open(path.constData(), O_PATH | O_DIRECTORY | O_CLOEXEC)));
}

/// The path of the folder's new name beside its old one; empty if it has none.
QByteArray pathAmongSiblings(const BookmarkData &data)
{
    // With its slash, so that the parent of a folder of the root is the root.
    const QByteArray parentPath = data.path.first(data.path.lastIndexOf('/') + 1);
    const FileDescriptor parent(::open(parentPath.constData(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    if (!parent.isValid()) {
        return {};
    }
    QByteArray path;
    int looked = 0;
    // A listing that fails midway has found nothing, which is the answer then.
    std::ignore = visitDirectoryEntries(parent.get(), [&](std::string_view name, quint64 inode) {
        if (++looked > mostSiblings) {
            return NextEntry::Stop;
        }
        if (inode != data.identity.inode) {
            return NextEntry::Continue;
        }
        const QByteArray siblingName(name.data(), qsizetype(name.size()));
        const auto sibling = identify(FileDescriptor(
            ::openat(parent.get(), siblingName.constData(), O_PATH | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC)));
        if (!sibling || !sibling->isSameFolder(data.identity)) {
            return NextEntry::Continue;
        }
        path = parentPath + siblingName;
        return NextEntry::Stop;
    });
    return path;
}

/// Whether the path leads into a home Trash or another volume's, whose folders the FreeDesktop.org Trash
/// specification names: what lies there was deleted.
bool isInTrash(const QByteArray &path)
{
    return path.contains("/Trash/files/") || path.contains("/.Trash/") || path.contains("/.Trash-");
}

/// Where the folder is now that it isn't at its path; empty if it can't be found.
QByteArray pathAfterMove(const BookmarkData &data)
{
    const QByteArray kept = nativePath(SecurityScopedAccess::keptUrl().toLocalFile());
    const auto folder = folderAt(kept);
    const bool isKept = folder && folder->isSameFolder(data.identity) && !isInTrash(kept);
    return isKept ? kept : pathAmongSiblings(data);
}

QUrl urlOf(const QByteArray &path)
{
    return QUrl::fromLocalFile(QFile::decodeName(path));
}

Result<Bookmark::ResolvedBookmark> locate(const BookmarkData &data)
{
    Bookmark::ResolvedBookmark located{
        .url = urlOf(data.path),
        .isStale = false,
        .pickedByUser = data.origin == Bookmark::Origin::PickedByUser,
    };
    const auto present = folderAt(data.path);
    if (present && present->isSameFolder(data.identity)) {
        return located;
    }
    located.isStale = true;
    // A folder that nobody picked counts by its name: whatever is there has its role now.
    if (present && !located.pickedByUser) {
        return located;
    }
    if (const QByteArray moved = pathAfterMove(data); !moved.isEmpty()) {
        located.url = urlOf(moved);
        return located;
    }
    if (!present) {
        return std::unexpected(present.error());
    }
    return located;
}

} // namespace

Result<QByteArray> Bookmark::make(const QUrl &folder, Origin origin)
{
    const QString local = folder.toLocalFile();
    const QByteArray path = local.isEmpty() ? QByteArray() : nativePath(QDir::cleanPath(local));
    auto identity = folderAt(path);
    if (!identity) {
        return std::unexpected(identity.error());
    }
    return BookmarkData{.path = path, .origin = origin, .identity = std::move(*identity)}.encoded();
}

Result<Bookmark::ResolvedBookmark> Bookmark::resolve(const QByteArray &bookmark)
{
    const auto data = BookmarkData::decode(bookmark);
    if (!data) {
        return std::unexpected(data.error());
    }
    return locate(*data);
}

std::optional<QUrl> Bookmark::pickedFolder(const QByteArray &bookmark)
{
    const auto data = BookmarkData::decode(bookmark);
    if (!data || data->origin != Origin::PickedByUser) {
        return std::nullopt;
    }
    const auto located = locate(*data);
    return located ? located->url : urlOf(data->path);
}

Bookmark::Origin Bookmark::origin(const QByteArray &bookmark)
{
    const auto data = BookmarkData::decode(bookmark);
    return data ? data->origin : Origin::Automatic;
}
