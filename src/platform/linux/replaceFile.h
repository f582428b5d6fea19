#pragma once

#include "Error.h"

#include <QByteArray>

#include <sys/types.h>

/// What a file that takes another one's place is to have.
struct FileReplacement {
    enum class Durability {
        /// What can be made anew isn't forced to the disk.
        MayBeLost,
        /// Forced to the disk before it takes the other one's place: after a crash there is one of the two.
        IsSynced,
    };

    static constexpr mode_t ownerOnly = 0600;

    Durability durability = Durability::MayBeLost;
    /// Who may read and write it.
    mode_t mode = ownerOnly;
};

/// Writes a file under another name in the same folder first, so that nobody sees half of it; what was at the
/// path, also a symbolic link, is gone then. Makes the folder, and those above it, with access for their
/// owner alone. A failure leaves everything as it was. Any thread.
[[nodiscard]] Result<void>
replaceFile(const QByteArray &path, const QByteArray &contents, const FileReplacement &replacement = {});
