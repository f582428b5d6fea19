#include "TextColor.h"

#include "Theme.h"

#include <utility>

QColor color(TextColor textColor)
{
    const Theme &theme = Theme::current();
    switch (textColor) {
    case TextColor::Primary:
        return theme.primary;
    case TextColor::Secondary:
        return theme.secondary;
    case TextColor::Tertiary:
        return theme.tertiary;
    case TextColor::Blue:
        return theme.blueText;
    case TextColor::Red:
        return theme.redText;
    case TextColor::Green:
        return theme.greenText;
    case TextColor::Orange:
        return theme.orangeText;
    case TextColor::Amber:
        return theme.amber;
    case TextColor::OnAccent:
        return theme.onAccent;
    }
    std::unreachable();
}
