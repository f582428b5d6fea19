#pragma once

#include "Theme.h"

#include <QPointF>
#include <QString>

class QPainter;

/// A white symbol on a rounded square of one colour, as it stands before a text.
struct SettingsIconBadge {
    QString systemImage;
    /// Which of the theme's colours.
    QColor Theme::*color = &Theme::gray;
    /// The edge of the square, in points.
    qreal size = 0;

    void paint(QPainter &painter, const QPointF &topLeft) const;
};
