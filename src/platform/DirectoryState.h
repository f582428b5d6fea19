#pragma once

#include <QtGlobal>

/// A folder's identity and times at one moment. Comparing two of them tells whether a listing made earlier
/// still holds, without listing again.
struct DirectoryState {
    quint64 device = 0;
    quint64 inode = 0;
    /// When an entry came, went or was renamed, in nanoseconds since 1970.
    qint64 modifiedNs = 0;
    /// When the folder itself changed in any way (its permissions, for one), in nanoseconds since 1970.
    qint64 changedNs = 0;
    /// Whether the listing that this state belongs to tells all that these times stand for: it was made on
    /// a local file system, and so long after the times that a later change must move them. Never true for
    /// a state that was read without a listing.
    bool listingIsComplete = false;

    /// True when a listing made at `listed` certainly still tells the contents of the folder, whose state
    /// now is this one.
    [[nodiscard]] bool isUnchangedSince(const DirectoryState &listed) const
    {
        return listed.listingIsComplete && device == listed.device && inode == listed.inode &&
               modifiedNs == listed.modifiedNs && changedNs == listed.changedNs;
    }

    bool operator==(const DirectoryState &) const = default;
};
