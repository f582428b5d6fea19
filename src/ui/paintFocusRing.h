#pragma once

#include <QRectF>

class QColor;
class QPainter;

/// Paints the ring that shows where the keyboard is: 2 points wide, 1.5 outside of `box`, whose corners have
/// the radius. The painter is to be antialiasing.
void paintFocusRing(QPainter &painter, const QRectF &box, qreal radius);

/// The same in a colour of its own, around what is coloured itself.
void paintFocusRing(QPainter &painter, const QRectF &box, qreal radius, const QColor &color);
