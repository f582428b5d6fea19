#pragma once

#include <QByteArray>
#include <QStringList>

/// Other programs' settings files, which may be anything: read in full or not at all, never waited for.
namespace configurationFile {

/// Larger files count as damaged.
constexpr qint64 mostBytes = 1 << 20;

/// Where `relativePath` may be, the user's own first: below XDG_CONFIG_HOME, then XDG_CONFIG_DIRS. Any
/// thread.
[[nodiscard]] QStringList places(const QString &relativePath);

/// Empty unless it is a regular file, or a link to one, that can be read and has a sane size. Any thread.
[[nodiscard]] QByteArray contents(const QString &path);

} // namespace configurationFile
