#pragma once

#include "Error.h"

#include <QByteArray>
#include <QString>

/// Sets an entry of a group such as `General` in a settings file of KDE's programs ("KConfig") to `true` or
/// `false`. Everything else in the file stays as it is, byte for byte. Of an entry that is there twice the
/// last, which counts, is changed; without one it is added at the end of the group, and without that at the
/// end of the file, which is made if it is missing.
///
/// The file is replaced as a whole, synced to the disk, and keeps its access rights; a symbolic link stays,
/// and the file that it leads to is replaced, or made. KDE's own lock is held meanwhile. A file that is
/// marked as immutable there, isn't the user's own or not writable, isn't text, is larger than 1 MiB, or is
/// no file at all is left alone, as is one that another program holds the lock of for longer than 0.1 s: that
/// is an error. Any thread; never waits for a FIFO.
[[nodiscard]] Result<void>
writeKConfigBoolean(const QString &path, const QByteArray &group, const QByteArray &key, bool value);
