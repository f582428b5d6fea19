#include "SidebarRow.h"

#include "AccessibleRole.h"
#include "Theme.h"
#include "Typography.h"
#include "continuousRoundedRect.h"

#include <QKeyEvent>
#include <QPainter>
#include <QStyle>

namespace {

/// In points. The badge has 2 above and below it, and the row as one sees it 2 more.
constexpr int rowHeight = 30;
constexpr qreal radius = 6;
constexpr int padding = 8;
constexpr int gapAfterBadge = 8;
constexpr qreal focusRingWidth = 2;

} // namespace

SidebarRow::SidebarRow(SettingsSection section, QWidget *parent) : QAbstractButton(parent), m_section(section)
{
    setAccessibleRole(*this, QAccessible::ListItem);
    setText(settingsSections::title(section));
    setAccessibleName(text());
    setFont(::font(TextStyle::Body));
    setCheckable(true);
    setAutoExclusive(true);
    setAttribute(Qt::WA_Hover);
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
    repaintWithTheme(*this);
}

QSize SidebarRow::sizeHint() const
{
    const int badge = static_cast<int>(settingsSections::badge(m_section).size);
    return {padding + badge + gapAfterBadge + fontMetrics().horizontalAdvance(text()) + padding, rowHeight};
}

void SidebarRow::keyPressEvent(QKeyEvent *event)
{
    if (event->key() == Qt::Key_Space) {
        QAbstractButton::keyPressEvent(event);
    } else {
        event->ignore();
    }
}

void SidebarRow::paintEvent(QPaintEvent * /*event*/)
{
    const Theme &theme = Theme::current();
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const QPainterPath shape = continuousRoundedRect(rect(), radius);
    if (isChecked()) {
        painter.fillPath(shape, theme.selectionTint);
    } else if (isDown()) {
        painter.fillPath(shape, theme.quietPressed);
    } else if (underMouse()) {
        painter.fillPath(shape, theme.quietHover);
    }

    const SettingsIconBadge badge = settingsSections::badge(m_section);
    const int side = static_cast<int>(badge.size);
    const QRect square(padding, (height() - side) / 2, side, side);
    badge.paint(painter, QStyle::visualRect(layoutDirection(), rect(), square).topLeft());

    const QRect label = rect().adjusted(square.right() + 1 + gapAfterBadge, 0, -padding, 0);
    painter.setPen(theme.primary);
    painter.drawText(
        QStyle::visualRect(layoutDirection(), rect(), label),
        static_cast<int>(Qt::AlignLeading | Qt::AlignVCenter) | Qt::TextSingleLine,
        fontMetrics().elidedText(text(), Qt::ElideRight, label.width()));
    if (hasFocus()) {
        // Inside the row: there is no room around it.
        constexpr qreal inset = 1 + focusRingWidth / 2;
        painter.strokePath(
            continuousRoundedRect(QRectF(rect()).adjusted(inset, inset, -inset, -inset), radius - inset),
            QPen(theme.focusRing, focusRingWidth));
    }
}
