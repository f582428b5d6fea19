#include "FolderIdentity.h"

#include "FileStatus.h"

#include <fcntl.h>
#include <sys/vfs.h>

#include <bit>
#include <cerrno>
#include <cstddef>
#include <new>

namespace {

/// Empty also where the system call is forbidden, as in some sandboxes.
QByteArray fileHandle(int descriptor)
{
    alignas(file_handle) std::byte storage[sizeof(file_handle) + MAX_HANDLE_SZ] = {};
    auto *handle = new (storage) file_handle;
    handle->handle_bytes = MAX_HANDLE_SZ;
    int mountId = 0;
    if (::name_to_handle_at(descriptor, "", handle, &mountId, AT_EMPTY_PATH) != 0) {
        return {};
    }
    return QByteArray::number(handle->handle_type) + ':' +
           QByteArray(
               reinterpret_cast<const char *>(storage) + offsetof(file_handle, f_handle),
               qsizetype(handle->handle_bytes));
}

} // namespace

Result<FolderIdentity> FolderIdentity::ofDescriptor(int descriptor)
{
    const auto status = FileStatus::ofDescriptor(descriptor);
    if (!status) {
        return std::unexpected(status.error());
    }
    struct statfs volume = {};
    if (::fstatfs(descriptor, &volume) != 0) {
        return std::unexpected(Error::fromErrno(errno, Error::FileReadUnknown));
    }
    return FolderIdentity{
        .fileSystem = std::bit_cast<quint64>(volume.f_fsid),
        .inode = status->inode,
        .birthNs = status->birthNs,
        .handle = fileHandle(descriptor),
    };
}

bool FolderIdentity::isSameFolder(const FolderIdentity &other) const
{
    if (inode != other.inode) {
        return false;
    }
    if (!handle.isEmpty() && !other.handle.isEmpty() && handle != other.handle) {
        return false;
    }
    if (birthNs && other.birthNs) {
        // Born in the same nanosecond with the same inode: the same one. The file system's number isn't
        // asked, because it may change when a disk is plugged in elsewhere.
        return *birthNs == *other.birthNs;
    }
    return fileSystem == other.fileSystem;
}
