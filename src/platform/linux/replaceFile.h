#pragma once

#include <QByteArray>

/// Writes a file that only its owner can read, under another name in the same folder first, so that nobody
/// sees half of it; what was at the path is gone then. Makes the folder, and those above it, with access for
/// their owner alone. It isn't forced to the disk: for what can be made anew. False leaves everything as it
/// was. Any thread.
bool replaceFile(const QByteArray &path, const QByteArray &contents);
