#include "Typography.h"

#include <QApplication>

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
        return {12, QFont::Normal, 16};
    case TextStyle::Subheadline:
        return {11, QFont::Normal, 14};
    case TextStyle::Caption:
        return {10, QFont::Normal, 13};
    case TextStyle::Button:
        return {13, QFont::Medium, 16};
    case TextStyle::SmallButton:
        return {12, QFont::Medium, 16};
    case TextStyle::Monospaced:
    case TextStyle::FrameNumber:
        return {10, QFont::Normal, 12};
    }
    std::unreachable();
}

constexpr qreal monospacedTracking = 0.8;

} // namespace

QFont font(TextStyle style)
{
    const Metrics wanted = metrics(style);
    QFont result = QApplication::font();
    result.setPixelSize(wanted.size);
    result.setWeight(wanted.weight);
    result.setItalic(false);
    // Unhinted advances: a text keeps its width when the screen's scale changes.
    result.setHintingPreference(QFont::PreferNoHinting);
    if (style == TextStyle::Monospaced || style == TextStyle::FrameNumber) {
        result.setFamilies(QStringList(QStringLiteral("JetBrains Mono")) + result.families());
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
