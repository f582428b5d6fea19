#include "SettingsCard.h"

#include "TextLabel.h"
#include "Theme.h"
#include "continuousRoundedRect.h"

#include <QPainter>
#include <QVBoxLayout>

namespace {

/// In points.
constexpr int spacing = 6;
constexpr int titlePadding = 4;
constexpr qreal radius = 10;
constexpr qreal borderWidth = 0.5;
constexpr float borderOpacity = 0.06F;

} // namespace

SettingsCard::SettingsCard(const std::optional<QString> &title, QWidget *content, QWidget *parent)
    : QWidget(parent),
      m_content(content)
{
    auto *const column = new QVBoxLayout(this);
    column->setContentsMargins({});
    column->setSpacing(spacing);
    if (title) {
        auto *const label = new TextLabel(TextStyle::StrongCaption, title->toUpper());
        label->setAlignment(Qt::AlignLeading);
        label->setColor(TextColor::Secondary);
        auto *const line = new QHBoxLayout;
        line->setContentsMargins(titlePadding, 0, titlePadding, 0);
        line->addWidget(label);
        column->addLayout(line);
    }
    column->addWidget(content);
    repaintWithTheme(*this);
}

void SettingsCard::paintEvent(QPaintEvent * /*event*/)
{
    const Theme &theme = Theme::current();
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const QRectF panel = m_content->geometry();
    QColor line = theme.primary;
    line.setAlphaF(borderOpacity);
    // Filled, and filled again inside: strokes of long outlines take their time.
    painter.fillPath(continuousRoundedRect(panel, radius), composited(line, theme.controlBackground));
    constexpr QMarginsF border(borderWidth, borderWidth, borderWidth, borderWidth);
    painter.fillPath(
        continuousRoundedRect(panel.marginsRemoved(border), radius - borderWidth), theme.controlBackground);
}
