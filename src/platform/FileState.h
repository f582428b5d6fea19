#pragma once

#include <QtGlobal>

/// A file's identity, size and times at one moment. Comparing two of them tells whether what was made of the
/// file's contents still holds, without reading them again.
struct FileState {
    quint64 device = 0;
    quint64 inode = 0;
    /// In bytes.
    qint64 size = 0;
    /// When the contents changed, in nanoseconds since 1970.
    qint64 modifiedNs = 0;
    /// When the file changed in any way (its permissions, for one), in nanoseconds since 1970.
    qint64 changedNs = 0;

    bool operator==(const FileState &) const = default;
};
