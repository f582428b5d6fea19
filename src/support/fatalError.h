#pragma once

#include <QString>

/// Stops the program with a message: for programming errors alone, never for what a user or a disk can do.
[[noreturn]] void fatalError(const QString &message);
