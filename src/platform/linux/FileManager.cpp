#include "FileManager.h"

#include "Bookmark.h"
#include "DirectoryEntries.h"
#include "FileDescriptor.h"
#include "FileStatus.h"
#include "GioLibrary.h"
#include "HomeTrash.h"
#include "SharedThumbnailCache.h"
#include "UserDefaults.h"
#include "UserDirectories.h"
#include "captureFolder.h"

#include <QDir>
#include <QFileInfo>

#include <sys/vfs.h>

#include <algorithm>
#include <chrono>
#include <csignal>

namespace {

/// A change needn't move a folder's times as long as they are this young: file systems stamp with a clock
/// that ticks, the coarsest (FAT's) every two seconds.
constexpr std::chrono::nanoseconds timestampGranularity = std::chrono::seconds(2);

/// Whether the times of a folder on this file system tell of every change: those of a mount that other
/// machines or programs change behind the kernel's back don't.
bool isOnLocalFileSystem(int descriptor)
{
    // The numbers are those of linux/magic.h, which lacks the last two.
    constexpr quint32 localFileSystems[] = {
        0xEF53,     // ext4
        0x58465342, // xfs
        0x9123683E, // btrfs
        0xF2F52010, // f2fs
        0x01021994, // tmpfs
        0x794C7630, // overlay
        0xCA451A4E, // bcachefs
        0x2FC12FC1, // zfs
    };
    struct statfs fileSystem = {};
    return ::fstatfs(descriptor, &fileSystem) == 0 &&
           std::ranges::find(localFileSystems, quint32(fileSystem.f_type)) != std::end(localFileSystems);
}

bool isLongAgo(qint64 timeNs)
{
    const auto now = std::chrono::system_clock::now().time_since_epoch();
    return std::chrono::nanoseconds(timeNs) + timestampGranularity <= now;
}

DirectoryState directoryState(const FileStatus &status)
{
    return {
        .device = status.device,
        .inode = status.inode,
        .modifiedNs = status.modifiedNs,
        .changedNs = status.changedNs,
        .listingIsComplete = false,
    };
}

std::unexpected<Error> readingError()
{
    return std::unexpected(Error::fromErrno(errno, Error::FileReadUnknown));
}

/// GIO says only that it found no Trash where nothing may be moved at all: then the folder's own answer tells
/// more.
Error clarified(const Error &error, const QString &path)
{
    const bool tellsNothing = error.isCocoa(Error::FileWriteUnknown);
    if (tellsNothing && ::access(nativePath(QFileInfo(path).path()).constData(), W_OK) != 0) {
        return Error::fromErrno(errno, Error::FileWriteUnknown);
    }
    return error;
}

/// The user's own folder of that kind by its entry among the XDG user directories.
QString ownFolder(SearchPathDirectory directory)
{
    switch (directory) {
    case SearchPathDirectory::Desktop:
        return userDirectory("XDG_DESKTOP_DIR", QStringLiteral("Desktop"));
    case SearchPathDirectory::Pictures:
        return userDirectory("XDG_PICTURES_DIR", QStringLiteral("Pictures"));
    case SearchPathDirectory::Downloads:
        return userDirectory("XDG_DOWNLOAD_DIR", QStringLiteral("Downloads"));
    }
    return QDir::homePath();
}

/// What the user picked for the role *Desktop*, if he did.
std::optional<QUrl> pickedFolder()
{
    const auto bookmark = UserDefaults::standard().data(FileManager::folderBookmarkPreference);
    return bookmark ? Bookmark::pickedFolder(*bookmark) : std::nullopt;
}

/// The folder that holds the role *Desktop* in place of the user's own desktop folder, if one does: what the
/// user picked, before all else.
std::optional<QString> folderInPlaceOfDesktop()
{
    const auto picked = pickedFolder();
    return picked ? picked->toLocalFile() : captureFolder();
}

} // namespace

const FileManager &FileManager::defaultManager()
{
    static const FileManager manager;
    return manager;
}

QList<QUrl> FileManager::urls(SearchPathDirectory directory) const
{
    if (directory == SearchPathDirectory::Desktop) {
        // The capture tool may well save in the home folder itself.
        if (const auto folder = folderInPlaceOfDesktop()) {
            return {QUrl::fromLocalFile(*folder)};
        }
    }
    const QString path = ownFolder(directory);
    return path == QDir::homePath() ? QList<QUrl>() : QList<QUrl>{QUrl::fromLocalFile(path)};
}

void FileManager::makeDesktop() const
{
    if (!pickedFolder()) {
        makeCaptureFolder();
    }
}

bool FileManager::isDesktopElsewhere() const
{
    const auto folder = folderInPlaceOfDesktop();
    return folder && *folder != ownFolder(SearchPathDirectory::Desktop);
}

Result<DirectoryState>
FileManager::contentsOfDirectory(const QString &path, ListingOption option, EntryVisitor visitor) const
{
    const FileDescriptor folder(
        ::open(nativePath(path).constData(), O_RDONLY | O_DIRECTORY | O_CLOEXEC | O_NONBLOCK));
    if (!folder.isValid()) {
        return readingError();
    }
    const auto status = FileStatus::ofDescriptor(folder.get());
    if (!status) {
        return std::unexpected(status.error());
    }
    DirectoryState state = ::directoryState(*status);
    state.listingIsComplete =
        isLongAgo(std::max(status->modifiedNs, status->changedNs)) && isOnLocalFileSystem(folder.get());

    const bool skipsHiddenFiles = option == ListingOption::SkipsHiddenFiles;
    const int errorNumber =
        visitDirectoryEntries(folder.get(), [&](std::string_view name, quint64 /*inode*/) {
            if (!skipsHiddenFiles || name.front() != '.') {
                visitor(QByteArrayView(name.data(), qsizetype(name.size())));
            }
            return NextEntry::Continue;
        });
    if (errorNumber != 0) {
        return std::unexpected(Error::fromErrno(errorNumber, Error::FileReadUnknown));
    }
    return state;
}

Result<DirectoryState> FileManager::directoryState(const QString &path) const
{
    const auto status = FileStatus::ofTarget(path);
    if (!status) {
        return std::unexpected(status.error());
    }
    return ::directoryState(*status);
}

Result<FileAttributes> FileManager::attributesOfItem(const QString &path) const
{
    const auto status = FileStatus::ofItem(path);
    if (!status) {
        return std::unexpected(status.error());
    }
    return status->attributes();
}

Result<FileState> FileManager::fileState(const QString &path) const
{
    const auto status = FileStatus::ofTarget(path);
    if (!status) {
        return std::unexpected(status.error());
    }
    return status->state();
}

Result<std::optional<QDateTime>> FileManager::creationDate(const QUrl &url) const
{
    const auto status = FileStatus::ofItem(url.toLocalFile());
    if (!status) {
        return std::unexpected(status.error());
    }
    return status->attributes().creationDate;
}

bool FileManager::isOpenForWriting(const QString &path) const
{
    const FileDescriptor file(
        ::open(nativePath(path).constData(), O_RDONLY | O_NONBLOCK | O_NOFOLLOW | O_CLOEXEC));
    if (!file.isValid()) {
        return false;
    }
    // Whoever opens the file for writing while the lease is held waits until it is dropped, and the holder
    // is sent a signal: SIGIO, which would end the program, or the one that is set here and does nothing.
    if (::fcntl(file.get(), F_SETSIG, SIGURG) != 0) {
        return false;
    }
    if (::fcntl(file.get(), F_SETLEASE, F_RDLCK) != 0) {
        return errno == EAGAIN;
    }
    ::fcntl(file.get(), F_SETLEASE, F_UNLCK);
    return false;
}

Result<void> FileManager::trashItem(const QUrl &url) const
{
    const QString path = url.toLocalFile();
    // Answers for what isn't there in one way, whatever the Trash would say.
    if (const auto status = FileStatus::ofItem(path); !status) {
        return std::unexpected(status.error());
    }
    const QByteArray native = nativePath(path);
    const auto moved = GioLibrary::instance().trash(native);
    if (moved) {
        SharedThumbnailCache(native).removeAll();
        return {};
    }
    if (moved.error().isRefusal) {
        const int errorNumber = HomeTrash::take(native);
        if (errorNumber == 0) {
            SharedThumbnailCache(native).removeAll();
            return {};
        }
        // The home Trash is elsewhere: then GIO's words say what the matter is.
        if (errorNumber != EXDEV) {
            return std::unexpected(Error::fromErrno(errorNumber, Error::FileWriteUnknown));
        }
    }
    return std::unexpected(clarified(moved.error().error, path));
}
