#include "systemFont.h"

#include <QApplication>

QFont systemFont(int points, QFont::Weight weight)
{
    QFont result = QApplication::font();
    result.setPixelSize(points);
    result.setWeight(weight);
    result.setItalic(false);
    // Some desktops name the style ("Regular") of the font that they set, which would count for more than the
    // weight.
    result.setStyleName({});
    // Unhinted advances: a text keeps its width when the screen's scale changes.
    result.setHintingPreference(QFont::PreferNoHinting);
    return result;
}
