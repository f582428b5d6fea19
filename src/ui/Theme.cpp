#include "Theme.h"

#include "Appearance.h"

#include <QWidget>

#include <algorithm>
#include <cmath>

namespace {

/// WCAG 2's least contrast for text of ordinary size.
constexpr qreal readableContrast = 4.5;

constexpr QColor rgb(quint32 value, qreal percent = 100)
{
    const auto channel = [value](int shift) { return static_cast<int>(value >> shift & 0xFF); };
    return {channel(16), channel(8), channel(0), qRound(255 * percent / 100)};
}

constexpr QColor black(qreal percent)
{
    return rgb(0x000000, percent);
}

constexpr QColor white(qreal percent)
{
    return rgb(0xFFFFFF, percent);
}

constexpr Theme lightTheme{
    .window = rgb(0xF6F6F7),
    .sidebar = rgb(0xECEDEF),
    .controlBackground = rgb(0xFFFFFF),
    .popover = rgb(0xFBFBFC),
    .primary = rgb(0x1D1F23),
    .secondary = rgb(0x5C6168),
    .tertiary = rgb(0x8A9097),
    .onAccent = rgb(0xFFFFFF),
    .separator = black(10),
    .border = black(17),
    .face = rgb(0xFFFFFF),
    .faceHover = rgb(0xF1F2F4),
    .facePressed = rgb(0xE3E5E8),
    .quietHover = black(5.5),
    .quietPressed = black(11),
    .well = black(6.5),
    .segment = rgb(0xFFFFFF),
    .accent = rgb(0x2F6BDE),
    .accentHover = rgb(0x2560D0),
    .accentPressed = rgb(0x1D53BC),
    .selectionTint = rgb(0x2F6BDE, 14),
    .focusRing = rgb(0x2F6BDE, 65),
    .gray = rgb(0x7B8087),
    .blue = rgb(0x2F6BDE),
    .orange = rgb(0xD9730D),
    .red = rgb(0xC93A34),
    .redHover = rgb(0xB8322C),
    .redPressed = rgb(0xA52A25),
    .green = rgb(0x23884D),
    .blueText = rgb(0x1E57C4),
    .redText = rgb(0xB92B27),
    .greenText = rgb(0x1B7A43),
    .orangeText = rgb(0xB3560B),
    .amber = rgb(0xE8A33C),
    .amberHover = rgb(0xE9A948),
    .amberTint = rgb(0xE8A33C, 22),
    .amberInk = rgb(0x7A4D06),
    .amberFocusRing = rgb(0xB58236),
    .onAmber = rgb(0xFFFFFF),
    .onAmberShadow = rgb(0x5C3600, 55),
    .placeholder = rgb(0x7B8087, 10),
    .imageEdge = black(10),
    .scrim = rgb(0x181A1E, 30),
    .bannerFill = rgb(0xD9730D, 10),
    .bannerHover = rgb(0xD9730D, 17),
    .bannerLine = rgb(0xD9730D, 32),
    .switchOff = rgb(0xC4C8CE),
    .switchKnob = rgb(0xFFFFFF),
    .popoverEdge = black(30),
    .popoverFarShadow = rgb(0x141820, 20),
    .popoverNearShadow = rgb(0x141820, 10),
    .controlShadow = black(10),
};

constexpr Theme darkTheme{
    .window = rgb(0x222427),
    .sidebar = rgb(0x1B1D1F),
    .controlBackground = rgb(0x2C2E32),
    .popover = rgb(0x2A2C30),
    .primary = rgb(0xF1F2F4),
    .secondary = rgb(0xA6ABB3),
    .tertiary = rgb(0x7C828B),
    .onAccent = rgb(0xFFFFFF),
    .separator = white(10),
    .border = white(13),
    .face = rgb(0x3A3D42),
    .faceHover = rgb(0x404348),
    .facePressed = rgb(0x303338),
    .quietHover = white(7),
    .quietPressed = white(13),
    .well = white(7.5),
    .segment = rgb(0x4A4D54),
    .accent = rgb(0x306AD8),
    .accentHover = rgb(0x3570E0),
    .accentPressed = rgb(0x2859BE),
    .selectionTint = rgb(0x538AF5, 26),
    .focusRing = rgb(0x6EA0FF, 75),
    .gray = rgb(0x70757D),
    .blue = rgb(0x306AD8),
    .orange = rgb(0xC96A10),
    .red = rgb(0xC73D37),
    .redHover = rgb(0xD0413A),
    .redPressed = rgb(0xAD332D),
    .green = rgb(0x2A8A52),
    .blueText = rgb(0x94BCFF),
    .redText = rgb(0xFF938B),
    .greenText = rgb(0x5FCB87),
    .orangeText = rgb(0xF5A04A),
    .amber = rgb(0xE8A33C),
    .amberHover = rgb(0xE9A948),
    .amberTint = rgb(0xE8A33C, 20),
    .amberInk = rgb(0xF2C27B),
    .amberFocusRing = rgb(0xEAB76A),
    .onAmber = rgb(0xFFFFFF),
    .onAmberShadow = rgb(0x5C3600, 55),
    .placeholder = rgb(0x8C929C, 14),
    .imageEdge = white(12),
    .scrim = black(52),
    .bannerFill = rgb(0xF5A04A, 12),
    .bannerHover = rgb(0xC96A10, 17),
    .bannerLine = rgb(0xF5A04A, 34),
    .switchOff = rgb(0x53575E),
    .switchKnob = rgb(0xF4F5F7),
    .popoverEdge = black(75),
    .popoverFarShadow = black(50),
    .popoverNearShadow = black(30),
    .controlShadow = black(10),
};

/// WCAG 2's relative luminance.
qreal luminance(const QColor &color)
{
    const auto linear = [](qreal channel) {
        return channel <= 0.04045 ? channel / 12.92 : std::pow((channel + 0.055) / 1.055, 2.4);
    };
    return 0.2126 * linear(color.redF()) + 0.7152 * linear(color.greenF()) + 0.0722 * linear(color.blueF());
}

QColor darkenedFor(const QColor &text, QColor ground)
{
    while (contrastRatio(text, ground) < readableContrast && ground.value() > 0) {
        ground.setHsv(ground.hsvHue(), ground.hsvSaturation(), ground.value() - 1);
    }
    return ground;
}

QColor withAlpha(QColor color, int alpha)
{
    color.setAlpha(alpha);
    return color;
}

void applyAccent(Theme &theme, const QColor &desktopAccent)
{
    theme.accent = darkenedFor(theme.onAccent, desktopAccent.toRgb());
    theme.accentHover = theme.accent.darker(108);
    theme.accentPressed = theme.accent.darker(120);
    theme.selectionTint = withAlpha(theme.accent, theme.selectionTint.alpha());
    theme.focusRing = withAlpha(desktopAccent, theme.focusRing.alpha());
}

void increaseContrast(Theme &theme)
{
    theme.secondary = theme.primary;
    theme.separator = withAlpha(theme.primary, 128);
    theme.border = withAlpha(theme.primary, 200);
    theme.focusRing.setAlpha(255);
    theme.onAmber = rgb(0x2A1B00);
    theme.onAmberShadow = Qt::transparent;
}

Theme makeForDesktop()
{
    const Appearance &desktop = Appearance::shared();
    return Theme::make(
        desktop.colorScheme() == Appearance::ColorScheme::Dark ? Theme::Scheme::Dark : Theme::Scheme::Light,
        desktop.accentColor(),
        desktop.increasesContrast() ? Theme::Contrast::Increased : Theme::Contrast::Normal);
}

} // namespace

Theme Theme::make(Scheme scheme, const std::optional<QColor> &accent, Contrast contrast)
{
    Theme theme = scheme == Scheme::Dark ? darkTheme : lightTheme;
    if (accent && accent->isValid()) {
        applyAccent(theme, *accent);
    }
    if (contrast == Contrast::Increased) {
        increaseContrast(theme);
    }
    return theme;
}

qreal contrastRatio(const QColor &one, const QColor &other)
{
    const qreal first = luminance(one);
    const qreal second = luminance(other);
    return (std::max(first, second) + 0.05) / (std::min(first, second) + 0.05);
}

QColor composited(const QColor &color, const QColor &ground)
{
    const qreal alpha = color.alphaF();
    const auto mix = [alpha](qreal above, qreal below) { return above * alpha + below * (1 - alpha); };
    return QColor::fromRgbF(
        static_cast<float>(mix(color.redF(), ground.redF())),
        static_cast<float>(mix(color.greenF(), ground.greenF())),
        static_cast<float>(mix(color.blueF(), ground.blueF())));
}

const Theme &Theme::current()
{
    static Theme theme = [] {
        Appearance &desktop = Appearance::shared();
        QObject::connect(&desktop, &Appearance::changed, &desktop, [] { theme = makeForDesktop(); });
        return makeForDesktop();
    }();
    return theme;
}

void repaintWithTheme(QWidget &widget)
{
    // The table is made first, so that it has changed when the widget paints.
    static_cast<void>(Theme::current());
    QObject::connect(&Appearance::shared(), &Appearance::changed, &widget, qOverload<>(&QWidget::update));
}
