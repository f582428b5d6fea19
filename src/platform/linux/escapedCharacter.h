#pragma once

#include <QChar>

/// What a backslash and the letter stand for in C, in GVariant's text format and in Qt's settings files: a
/// control character, or the letter itself.
[[nodiscard]] QChar escapedCharacter(QChar letter);
