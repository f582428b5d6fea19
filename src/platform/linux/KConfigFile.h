#pragma once

#include <QString>
#include <QStringList>

#include <optional>

/// The value of a key in a settings file of KDE's kind, read afresh: `[Outer][Inner]` heads a group inside a
/// group, `key=value` lines follow, `#` begins a comment, `key[$i]=value` is the same key with a mark, and
/// `key[de]=value` its translation, which doesn't count. The last of several lines of a key counts.
///
/// Empty if there is no such file, group or key, or the file is damaged. An empty list of groups is what
/// stands before the first group. Any thread.
///
/// The format is that of KConfig's `kconfigini.cpp`; `[General]` files of QSettings read the same.
[[nodiscard]] std::optional<QString>
readKConfigEntry(const QString &path, const QStringList &groups, const QString &key);
