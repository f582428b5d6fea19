#pragma once

#include <QString>

#include <optional>

/// The desktop's own settings, as GIO's `GSettings` gives them. Empty where the schema or the key isn't
/// installed, the value has another type, or nobody answers within a second.
///
/// Read by GIO's own tool in a process of its own: in ours, GSettings would bring the desktop's database
/// client, a bus connection and a thread, for good. Takes some ten milliseconds; any thread.
namespace gsettings {

/// `path` is where a relocatable schema is asked for; empty for all others.
[[nodiscard]] std::optional<QString>
string(const QString &schema, const QString &key, const QString &path = {});
[[nodiscard]] std::optional<bool>
boolean(const QString &schema, const QString &key, const QString &path = {});

} // namespace gsettings
