#pragma once

#include <QString>

/// Writes exactly one line to standard output, in one write, so that lines of several threads never mix.
/// Line breaks and other control characters inside `line` (file names hold any) are escaped as `\n`,
/// `\x1b` and so on; a backslash stays as it is. A closed or full output is ignored: there is nowhere left
/// to say so. Any thread.
void print(const QString &line);
