#pragma once

#include "Error.h"

#include <QByteArray>

#include <optional>

/// What tells one folder from every other, over renames and restarts of the computer.
struct FolderIdentity {
    /// The file system's own number, `f_fsid`: most derive it from their UUID, xfs and f2fs from the device.
    quint64 fileSystem = 0;
    quint64 inode = 0;
    /// In nanoseconds since 1970; empty where the file system keeps none.
    std::optional<qint64> birthNs;
    /// The kernel's file handle, with its type in front: it tells a folder from a later one that got its
    /// inode. Empty where the file system has none.
    QByteArray handle;

    [[nodiscard]] static Result<FolderIdentity> ofDescriptor(int descriptor);

    /// Whether both are of one folder, as far as both know.
    [[nodiscard]] bool isSameFolder(const FolderIdentity &other) const;
};
