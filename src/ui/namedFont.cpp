#include "namedFont.h"

#include "fatalError.h"
#include "systemFont.h"

#include <QStringList>

#include <algorithm>
#include <array>

namespace {

/// What fontconfig and the toolkit know a font by. The families are alternatives, the best one first.
struct Face {
    const char *postScriptName;
    std::array<const char *, 2> families;
    QFont::Weight weight;
};

constexpr std::array faces{
    // The file that is installed with the program has a family of its own for each weight; a distribution's
    // has one for all.
    Face{"SpaceGrotesk-Medium", {"Space Grotesk Medium", "Space Grotesk"}, QFont::Medium},
    Face{"Inter-Regular", {"Inter"}, QFont::Normal},
    Face{"Inter-SemiBold", {"Inter"}, QFont::DemiBold},
    // The name in the variable font's file. As one file for each weight, it is "JetBrainsMono-Regular".
    Face{"JetBrainsMonoRoman-Regular", {"JetBrains Mono"}, QFont::Normal},
};

} // namespace

QFont namedFont(const QString &postScriptName, int points)
{
    const auto face = std::ranges::find_if(
        faces, [&](const Face &each) { return postScriptName == QLatin1String(each.postScriptName); });
    if (face == faces.end()) {
        fatalError(QStringLiteral("No font is named ") + postScriptName);
    }
    QFont result = systemFont(points, face->weight);
    QStringList families;
    for (const char *family : face->families) {
        if (family != nullptr) {
            families.append(QLatin1String(family));
        }
    }
    result.setFamilies(families + result.families());
    return result;
}
