#pragma once

#include "Error.h"

#include <QByteArray>
#include <QString>

class FileManager;

/// Looks whether folders can be read. Any thread; blocks for as long as the disk takes.
namespace folderAccess {

/// How many entries the folder has, hidden ones too.
[[nodiscard]] Result<qsizetype> entryCount(const FileManager &fileManager, const QString &path);

/// Whether the bookmark, which is or was stored under the key, leads to a folder that can be listed; prints
/// how it went. Takes and gives back an access of its own.
[[nodiscard]] bool
verify(const FileManager &fileManager, const QString &bookmarkKey, const QByteArray &bookmark);

} // namespace folderAccess
