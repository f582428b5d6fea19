#pragma once

#include <QByteArray>

/// The home Trash of the freedesktop Trash specification 1.0, for what GIO refuses to move there though a
/// plain rename does it: files on overlays, and names so long that their info file needs a shorter one.
///
/// Nothing is ever copied, deleted or replaced. Any thread; other programs may use the Trash at the same
/// time.
namespace HomeTrash {

/// Moves what lies at the absolute path, a symbolic link as itself. Returns 0 or the error number of the
/// system, EXDEV if the home Trash is on another mount; the item then is where it was and nothing is left
/// in the Trash.
[[nodiscard]] int take(const QByteArray &path);

/// The name in the Trash for the item's name: as it is for the first attempt, with a number before its suffix
/// for the later ones, and cut between two characters where it would be too long together with `.trashinfo`.
[[nodiscard]] QByteArray nameInTrash(const QByteArray &name, int attempt);

} // namespace HomeTrash
