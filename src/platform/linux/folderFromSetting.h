#pragma once

#include <QString>

#include <optional>

/// The path that a program's setting for a folder means: an absolute path, one that begins with `~/`, or a
/// `file:` URL of this machine. Cleaned, without trailing slash. Nothing if the setting isn't there or is
/// empty, which is how programs store "not set"; an empty path for anything else.
[[nodiscard]] std::optional<QString> folderFromSetting(const std::optional<QString> &setting);
