#pragma once

#include <QJsonValue>
#include <QString>

#include <optional>

/// The program's own settings files: `$XDG_CONFIG_HOME/Deskbroom/<name>.json`, one JSON object each, whose
/// members are the values under their keys. Reading and writing is `QSettings`': afresh at every call (a few
/// microseconds while the file stays as it is), members that nobody here knows survive, and a change is on
/// disk, by temporary file and rename, when the call returns. Any thread and several processes.
///
/// A file that can't be understood is set aside as `<name>.json.damaged` (`.damaged-2` and so on if there is
/// one); a value that can't be written stays in `QSettings`' memory, if it remembers the file, until it can
/// be. Both print one line. A FIFO or a folder in a file's place has no values and takes none.
namespace jsonSettings {

/// None if there is no such member; JSON's null is a value.
[[nodiscard]] std::optional<QJsonValue> value(const QString &name, const QString &key);

void setValue(const QString &name, const QString &key, const QJsonValue &value);

} // namespace jsonSettings
