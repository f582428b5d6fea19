#pragma once

#include "FunctionRef.h"

#include <QByteArray>
#include <QByteArrayView>

/// What is common to the settings files of other programs, which are read and never written. Any thread.
namespace settingsFile {

/// The bytes of a small regular file, or of the one behind a symbolic link. Empty if there is none, it may
/// not be read, or it is larger than 1 MiB: no settings file is. Never waits for a FIFO's other end.
[[nodiscard]] QByteArray contents(const QString &path);

/// Called with what stands left and right of an entry's first `=`, without the blanks around them.
using EntryVisitor = FunctionRef<void(QByteArrayView key, QByteArrayView value)>;

/// Hands over the entries of one group in their order: the lines `key=value` below a line that is `header`,
/// such as `[General]`; with an empty header, those above the first group. Comments (`#`, `;`) and other
/// lines are passed over. What follows in the header's line, such as KConfig's `[$i]`, doesn't matter as long
/// as it isn't the name of a group within that one.
void visitEntries(QByteArrayView contents, QByteArrayView header, EntryVisitor visitor);

} // namespace settingsFile
