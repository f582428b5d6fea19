#pragma once

#include <QString>

/// The path that a setting means: an absolute path, one that begins with `~/`, or a `file:` URL of this
/// machine. Cleaned, without trailing slash. Empty for anything else.
[[nodiscard]] QString folderFromSetting(const QString &value);
