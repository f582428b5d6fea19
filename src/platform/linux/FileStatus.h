#pragma once

#include "Error.h"
#include "FileAttributes.h"
#include "FileState.h"

#include <QByteArray>

#include <sys/stat.h>

#include <optional>

/// A path as the system takes it. A path with a null character names nothing; as an empty one every system
/// call refuses it with ENOENT instead of taking its first half for the whole.
[[nodiscard]] QByteArray nativePath(const QString &path);

/// What `statx` tells of a file, in the units of this program.
struct FileStatus {
    quint64 device = 0;
    quint64 inode = 0;
    qint64 size = 0;
    mode_t mode = 0;
    /// In nanoseconds since 1970.
    qint64 modifiedNs = 0;
    qint64 changedNs = 0;
    /// Empty where the file system keeps no birth time.
    std::optional<qint64> birthNs;

    /// Of the item itself: a symbolic link isn't followed.
    [[nodiscard]] static Result<FileStatus> ofItem(const QString &path);
    /// Of what is at the path or behind a symbolic link there.
    [[nodiscard]] static Result<FileStatus> ofTarget(const QString &path);
    [[nodiscard]] static Result<FileStatus> ofDescriptor(int descriptor);
    /// Of the item itself, by its name in an open folder.
    [[nodiscard]] static Result<FileStatus> ofEntry(int folder, const char *name);

    [[nodiscard]] FileAttributes attributes() const;
    [[nodiscard]] FileState state() const;

    [[nodiscard]] bool isRegularFile() const { return S_ISREG(mode); }

    [[nodiscard]] bool isFolder() const { return S_ISDIR(mode); }
};
