#include "FileStatus.h"

#include <QFile>

#include <fcntl.h>

#include <algorithm>
#include <cerrno>
#include <chrono>

namespace {

qint64 nanoseconds(const statx_timestamp &time)
{
    return std::chrono::nanoseconds(std::chrono::seconds(time.tv_sec)).count() + time.tv_nsec;
}

Result<FileStatus> status(int directory, const char *path, int flags)
{
    struct statx told = {};
    if (::statx(directory, path, flags, STATX_BASIC_STATS | STATX_BTIME, &told) != 0) {
        return std::unexpected(Error::fromErrno(errno, Error::FileReadUnknown));
    }
    return FileStatus{
        .device = (quint64(told.stx_dev_major) << 32U) | told.stx_dev_minor,
        .inode = told.stx_ino,
        .size = qint64(told.stx_size),
        .mode = told.stx_mode,
        .modifiedNs = nanoseconds(told.stx_mtime),
        .changedNs = nanoseconds(told.stx_ctime),
        .birthNs =
            (told.stx_mask & STATX_BTIME) != 0 ? std::optional(nanoseconds(told.stx_btime)) : std::nullopt,
    };
}

} // namespace

QByteArray nativePath(const QString &path)
{
    return path.contains(QChar::Null) ? QByteArray() : QFile::encodeName(path);
}

Result<FileStatus> FileStatus::ofItem(const QString &path)
{
    return status(AT_FDCWD, nativePath(path).constData(), AT_SYMLINK_NOFOLLOW);
}

Result<FileStatus> FileStatus::ofTarget(const QString &path)
{
    return status(AT_FDCWD, nativePath(path).constData(), 0);
}

Result<FileStatus> FileStatus::ofDescriptor(int descriptor)
{
    return status(descriptor, "", AT_EMPTY_PATH);
}

Result<FileStatus> FileStatus::ofEntry(int folder, const char *name)
{
    return status(folder, name, AT_SYMLINK_NOFOLLOW);
}

FileAttributes FileStatus::attributes() const
{
    const qint64 createdNs = std::min(modifiedNs, birthNs.value_or(modifiedNs));
    const auto created = std::chrono::floor<std::chrono::milliseconds>(std::chrono::nanoseconds(createdNs));
    return {
        // In UTC: local time would be looked up in the time zone's rules for each file.
        .creationDate = QDateTime::fromMSecsSinceEpoch(created.count(), Qt::UTC),
        .size = size,
        .isRegularFile = isRegularFile(),
    };
}

FileState FileStatus::state() const
{
    return {
        .device = device,
        .inode = inode,
        .size = size,
        .modifiedNs = modifiedNs,
        .changedNs = changedNs,
    };
}
