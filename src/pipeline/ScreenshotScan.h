#pragma once

#include "DirectoryState.h"

#include <QList>
#include <QStringList>

#include <algorithm>

/// The screenshots of one folder as one listing found them.
struct FolderScan {
    QString folder;
    /// The folder's identity and times just before the listing: a later scan that finds them unmoved takes
    /// the paths over without listing again.
    DirectoryState state;
    /// Full paths in listing order.
    QStringList paths;

    /// Whether this is the other scan taken over: cheap, nothing is compared but the folder's name.
    [[nodiscard]] bool isTakenOverFrom(const FolderScan &other) const
    {
        return state == other.state && paths.isSharedWith(other.paths) && folder == other.folder;
    }
};

/// What one scan of the watched folders found. A value: it crosses threads by copy, and copies share.
struct ScreenshotScan {
    /// The folders that could be listed, in the order in which they are watched.
    QList<FolderScan> folders;
    /// All their paths, folder by folder.
    QStringList paths;

    [[nodiscard]] const FolderScan *find(const QString &folder) const
    {
        const auto found = std::ranges::find(folders, folder, &FolderScan::folder);
        return found == folders.cend() ? nullptr : &*found;
    }

    /// Whether nothing has changed since `other`, of which this scan took everything over.
    [[nodiscard]] bool isTakenOverFrom(const ScreenshotScan &other) const
    {
        return std::ranges::equal(
            folders, other.folders,
            [](const FolderScan &mine, const FolderScan &theirs) { return mine.isTakenOverFrom(theirs); });
    }
};
