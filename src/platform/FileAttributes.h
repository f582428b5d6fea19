#pragma once

#include <QDateTime>

#include <optional>

/// What is known of one entry of a folder. A symbolic link is told of as itself, not as what it leads to.
struct FileAttributes {
    /// The earlier of birth time and modification time, or the modification time alone where the file
    /// system keeps no birth time: a file that was copied or restored keeps its old modification time, and
    /// so doesn't look new. In UTC.
    std::optional<QDateTime> creationDate;
    /// In bytes.
    qint64 size = 0;
    bool isRegularFile = false;
};
