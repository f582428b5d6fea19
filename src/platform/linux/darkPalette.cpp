#include "darkPalette.h"

#include <QColor>

QPalette darkPalette()
{
    constexpr QRgb window = 0x2c2c2e;
    constexpr QRgb button = 0x3a3a3c;
    constexpr QRgb base = 0x1e1e20;
    constexpr QRgb alternateBase = 0x262628;
    constexpr QRgb text = 0xf2f2f4;
    constexpr QRgb disabledText = 0x8a8a8e;
    constexpr QRgb highlight = 0x2f6fd0;

    // The toolkit mixes the edges from these two.
    QPalette palette{QColor(button), QColor(window)};
    palette.setColor(QPalette::Base, base);
    palette.setColor(QPalette::AlternateBase, alternateBase);
    palette.setColor(QPalette::Highlight, highlight);
    palette.setColor(QPalette::HighlightedText, text);
    for (const QPalette::ColorRole role : {QPalette::WindowText, QPalette::Text, QPalette::ButtonText}) {
        palette.setColor(role, text);
        palette.setColor(QPalette::Disabled, role, disabledText);
    }
    palette.setColor(QPalette::PlaceholderText, disabledText);
    return palette;
}
