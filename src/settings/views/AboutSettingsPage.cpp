#include "AboutSettingsPage.h"

#include "ApplicationIcon.h"
#include "FeatureRow.h"
#include "SettingsCard.h"
#include "SettingsRowDivider.h"
#include "TextLabel.h"

#include <QCoreApplication>
#include <QVBoxLayout>

#include <array>

namespace {

/// In points.
constexpr int topPadding = 24;
constexpr int bottomPadding = 20;
constexpr int iconSide = 64;
constexpr int gapAfterIcon = 12;
constexpr int gapAfterName = 3;
constexpr int gapAfterVersion = 8;
constexpr int gapAfterText = 20;
constexpr int textWidth = 360;
constexpr int featuresWidth = 400;
constexpr int featuresPadding = 3;
constexpr qreal featureBadgeSize = 20;

} // namespace

AboutSettingsPage::AboutSettingsPage(QWidget *parent) : QWidget(parent)
{
    auto *const column = new QVBoxLayout(this);
    column->setContentsMargins(0, topPadding, 0, bottomPadding);
    column->setSpacing(0);
    const auto add = [column](QWidget *part, int gapAfter) {
        column->addWidget(part, 0, Qt::AlignHCenter);
        column->addSpacing(gapAfter);
    };
    const auto secondary = [](TextStyle style, const QString &text) {
        auto *const label = new TextLabel(style, text);
        label->setColor(TextColor::Secondary);
        return label;
    };

    add(new ApplicationIcon(iconSide), gapAfterIcon);
    add(new TextLabel(TextStyle::Title3, tr("Deskbroom")), gapAfterName);
    if (const QString version = QCoreApplication::applicationVersion(); !version.isEmpty()) {
        add(secondary(TextStyle::Caption, tr("Version %1").arg(version)), gapAfterVersion);
    }
    auto *const text = secondary(
        TextStyle::Callout, tr("Keeps your desktop clean by automatically managing your screenshots."));
    text->setFixedSize(textWidth, text->heightForWidth(textWidth));
    add(text, gapAfterText);
    auto *const features = new SettingsCard(std::nullopt, makeFeatures());
    features->setFixedWidth(featuresWidth);
    add(features, 0);
    column->addStretch();
}

QWidget *AboutSettingsPage::makeFeatures()
{
    struct Feature {
        QString symbol;
        QColor Theme::*color;
        QString text;
    };

    const std::array features = {
        Feature{QStringLiteral("bell.badge"), &Theme::orange, tr("Get notified when screenshots are taken")},
        Feature{QStringLiteral("trash.circle"), &Theme::red, tr("Option to delete screenshots immediately")},
        Feature{QStringLiteral("timer"), &Theme::blue, tr("Schedule screenshots for automatic deletion")},
        Feature{QStringLiteral("checkmark.circle"), &Theme::green, tr("Confirmation before deleting")},
    };
    auto *const content = new QWidget;
    auto *const column = new QVBoxLayout(content);
    column->setContentsMargins(0, featuresPadding, 0, featuresPadding);
    column->setSpacing(0);
    for (const Feature &feature : features) {
        if (column->count() > 0) {
            column->addWidget(new SettingsRowDivider(FeatureRow::textInset));
        }
        column->addWidget(new FeatureRow({feature.symbol, feature.color, featureBadgeSize}, feature.text));
    }
    return content;
}
