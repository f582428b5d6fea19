#pragma once

#include <QByteArray>
#include <QString>

/// Small things that tests do to real files. Each stops the test program if it can't be done: then the
/// machine is at fault, not what is tested.
namespace files {

void write(const QString &path, const QByteArray &contents = "contents");

/// Makes the file `seconds` old by its modification time; the birth time can't be set.
void makeOlder(const QString &path, int seconds);

void makeFolder(const QString &path);
void rename(const QString &from, const QString &to);
void remove(const QString &path);
[[nodiscard]] bool exists(const QString &path);

} // namespace files
