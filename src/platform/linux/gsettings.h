#pragma once

#include <QString>

#include <QByteArray>

#include <expected>
#include <optional>

/// The desktop's own settings, as GIO's `GSettings` gives them.
///
/// Read by GIO's own tool in a process of its own: in ours, GSettings would bring the desktop's database
/// client, a bus connection and a thread, for good. Takes some ten milliseconds; any thread.
namespace gsettings {

enum class Failure {
    /// The schema or the key isn't installed, or GIO's tool isn't.
    NotInstalled,
    /// Not within a second; the next time may do better.
    NoAnswer,
};

/// The value in GVariant's text format. `path` is where a relocatable schema is asked for; empty for all
/// others.
[[nodiscard]] std::expected<QByteArray, Failure>
read(const QString &schema, const QString &key, const QString &path = {});

/// What such a value says; empty if it has another type.
[[nodiscard]] std::optional<QString> asString(const QByteArray &value);
[[nodiscard]] std::optional<bool> asBoolean(const QByteArray &value);

/// Both in one; empty after any failure.
[[nodiscard]] std::optional<bool>
boolean(const QString &schema, const QString &key, const QString &path = {});

} // namespace gsettings
