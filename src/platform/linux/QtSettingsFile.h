#pragma once

#include <QString>

#include <optional>

/// One text of a settings file as Qt's programs write it (`QSettings` in its INI format), read afresh at
/// every call; `group` is `General` for keys outside all groups. Empty if there is no such file or entry. Any
/// thread.
///
/// Not `QSettings`: it would make and lock files beside another program's, and wait for a FIFO.
[[nodiscard]] std::optional<QString>
readQtSettingsEntry(const QString &path, const QString &group, const QString &key);
