#pragma once

#include <QString>

#include <optional>

/// The same answers as `gsettings`, kept: it starts a process for each question, which is asked again only
/// when the user's database has changed (dconf's, or the file that stands in for it in a sandbox). An answer
/// from memory costs two `statx`. Any thread, without a lock.
namespace keptSettings {

[[nodiscard]] std::optional<QString> string(const QString &schema, const QString &key);
[[nodiscard]] std::optional<bool> boolean(const QString &schema, const QString &key);

} // namespace keptSettings
