#pragma once

#include "Error.h"

#include <QByteArray>

/// The settings files of other programs, whatever their format. Any thread.
namespace settingsFile {

/// The bytes of a small regular file, or of the one behind a symbolic link. An error if there is none, it may
/// not be read, or it is larger than 1 MiB: no settings file is. Never waits for a FIFO's other end. The path
/// is as the system takes it, of whatever bytes.
[[nodiscard]] Result<QByteArray> read(const QByteArray &path);

/// The same for whom all of these are a file without settings.
[[nodiscard]] QByteArray contents(const QString &path);

} // namespace settingsFile
