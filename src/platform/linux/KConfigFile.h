#pragma once

#include <QString>
#include <QStringList>

#include <optional>

/// One entry of a settings file as KDE's programs write it ("KConfig"), read afresh at every call; also of
/// the simpler files of Xfce's programs, which are a part of that format. `groups` leads from the outermost
/// group inwards (`[One][Two]`); without any it is the entries above the first group. Of an entry that is
/// there twice, the last counts.
///
/// Escapes are resolved, and environment variables where the entry is marked as having them
/// (`key[$e]=$HOME/…`); the commands that the format allows there are never run. Empty if there is no such
/// file or entry, if it is marked as deleted, or if there is only a translated one (`key[de]=`). Any thread.
[[nodiscard]] std::optional<QString>
readKConfigEntry(const QString &path, const QStringList &groups, const QString &key);

/// An entry as all files of a name together give it.
struct KConfigEntry {
    std::optional<QString> value;
    /// Whether one of the files forbids that it is changed ("kiosk": `[$i]` behind the entry or its group, or
    /// alone in a line).
    bool isImmutable = false;
};

/// The same in the order in which KDE's programs take their settings together: an entry of the file in
/// `$XDG_CONFIG_HOME` goes before those of the folders in `$XDG_CONFIG_DIRS`, earlier ones of these before
/// later ones. What a file marks as immutable is never taken from a file that goes before it.
[[nodiscard]] KConfigEntry
readCascadedKConfigEntry(const QString &fileName, const QStringList &groups, const QString &key);
