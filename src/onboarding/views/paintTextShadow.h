#pragma once

#include <QtGlobal>

class QColor;
class QPainter;
class QRect;
class QString;

/// How far down the shadow of a text lies, and how far it is blurred, in points.
struct TextShadow {
    qreal offset;
    qreal blur;
};

/// Paints the shadow of a line of text that stands in the middle of `rect`, in the painter's font and fine
/// enough for letters: the blur is a true Gaussian of half its size.
void paintTextShadow(
    QPainter &painter, const QRect &rect, const QString &text, const TextShadow &shadow, const QColor &color);
