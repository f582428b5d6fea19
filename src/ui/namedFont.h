#pragma once

#include <QFont>
#include <QString>

/// The font with this PostScript name: "SpaceGrotesk-Medium", "Inter-Regular", "Inter-SemiBold" or
/// "JetBrainsMonoRoman-Regular"; any other is a programming error. Fontconfig finds them, with the system's
/// fonts or with those that are installed with the program. Where the family is missing, and for letters that
/// it hasn't, it is the system font of that size and weight. Sizes are in points as in `systemFont`.
[[nodiscard]] QFont namedFont(const QString &postScriptName, int points);
