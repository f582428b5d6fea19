#include "Typography.h"

#include "namedFont.h"
#include "systemFont.h"

#include <utility>

namespace {

struct Metrics {
    int size;
    QFont::Weight weight;
    int lineHeight;
};

constexpr Metrics metrics(TextStyle style)
{
    switch (style) {
    case TextStyle::Title3:
        return {15, QFont::DemiBold, 18};
    case TextStyle::Headline:
        return {13, QFont::DemiBold, 16};
    case TextStyle::Body:
        return {13, QFont::Normal, 16};
    case TextStyle::Callout:
    case TextStyle::Shortcut:
        return {12, QFont::Normal, 16};
    case TextStyle::Subheadline:
        return {11, QFont::Normal, 14};
    case TextStyle::StrongSubheadline:
        return {11, QFont::DemiBold, 14};
    case TextStyle::Caption:
        return {10, QFont::Normal, 13};
    case TextStyle::StrongCaption:
        return {10, QFont::DemiBold, 13};
    case TextStyle::Button:
        return {13, QFont::Medium, 16};
    case TextStyle::SmallButton:
        return {12, QFont::Medium, 16};
    case TextStyle::Monospaced:
    case TextStyle::FrameNumber:
    case TextStyle::StepCaption:
        return {10, QFont::Normal, 12};
    case TextStyle::WelcomeHeadline:
        return {30, QFont::Medium, 36};
    case TextStyle::StepHeadline:
        return {26, QFont::Medium, 32};
    case TextStyle::StepDescription:
        return {14, QFont::Normal, 21};
    case TextStyle::StepButton:
        return {14, QFont::DemiBold, 17};
    case TextStyle::StepLink:
        return {13, QFont::Normal, 16};
    }
    std::unreachable();
}

constexpr qreal monospacedTracking = 0.8;
constexpr qreal captionTracking = 1;

/// The PostScript name of the font that a style has of its own; empty for the desktop's.
QString fontName(TextStyle style)
{
    switch (style) {
    case TextStyle::WelcomeHeadline:
    case TextStyle::StepHeadline:
        return QStringLiteral("SpaceGrotesk-Medium");
    case TextStyle::StepDescription:
    case TextStyle::StepLink:
        return QStringLiteral("Inter-Regular");
    case TextStyle::StepButton:
        return QStringLiteral("Inter-SemiBold");
    case TextStyle::Monospaced:
    case TextStyle::FrameNumber:
    case TextStyle::StepCaption:
        return QStringLiteral("JetBrainsMonoRoman-Regular");
    default:
        return {};
    }
}

/// A few short words in a small size, whose kerning nobody sees. Without it the toolkit doesn't copy the
/// font's tables for that size, which are 135 KiB with Inter, for good.
bool needsNoKerning(TextStyle style)
{
    return style == TextStyle::Shortcut || style == TextStyle::StrongSubheadline ||
           style == TextStyle::StrongCaption;
}

} // namespace

QFont font(TextStyle style)
{
    const Metrics wanted = metrics(style);
    const QString name = fontName(style);
    QFont result = name.isEmpty() ? systemFont(wanted.size, wanted.weight) : namedFont(name, wanted.size);
    if (needsNoKerning(style)) {
        result.setStyleStrategy(QFont::PreferNoShaping);
    }
    if (style == TextStyle::StepCaption) {
        result.setLetterSpacing(QFont::AbsoluteSpacing, captionTracking);
    }
    if (style == TextStyle::Monospaced) {
        result.setLetterSpacing(QFont::AbsoluteSpacing, monospacedTracking);
    }
    return result;
}

int lineHeight(TextStyle style)
{
    return metrics(style).lineHeight;
}
