#include "FeatureRow.h"

#include "TextLabel.h"

#include <QHBoxLayout>
#include <QPainter>
#include <QStyle>

namespace {

/// In points.
constexpr int horizontalPadding = 12;
constexpr int verticalPadding = 8;

} // namespace

FeatureRow::FeatureRow(SettingsIconBadge badge, const QString &text, QWidget *parent)
    : QWidget(parent),
      m_badge(std::move(badge))
{
    auto *const label = new TextLabel(TextStyle::Body, text);
    label->setAlignment(Qt::AlignLeading | Qt::AlignVCenter);
    label->setMinimumHeight(static_cast<int>(m_badge.size));
    auto *const line = new QHBoxLayout(this);
    line->setContentsMargins(0, verticalPadding, 0, verticalPadding);
    line->setSpacing(0);
    // Margins would stay at their sides where one reads from right to left.
    line->addSpacing(textInset);
    line->addWidget(label);
    line->addSpacing(horizontalPadding);
    repaintWithTheme(*this);
}

void FeatureRow::paintEvent(QPaintEvent * /*event*/)
{
    const int side = static_cast<int>(m_badge.size);
    const QRect square(horizontalPadding, (height() - side) / 2, side, side);
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    m_badge.paint(painter, QStyle::visualRect(layoutDirection(), rect(), square).topLeft());
}
