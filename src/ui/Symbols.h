#pragma once

#include <QColor>
#include <QIcon>
#include <QImage>
#include <QString>

class QPainter;

/// The program's own one-colour drawings, known by their names ("camera.fill"), each also with semibold
/// strokes
/// ("camera.fill.semibold"). They are part of the program as SVG text; what is painted stays for a while in
/// the toolkit's cache of pixmaps. Main thread.
namespace Symbols {

/// The drawing in `tint`, in a square of `points`, crisp at `devicePixelRatio`. A name without a drawing is a
/// programming error.
[[nodiscard]] QImage image(const QString &name, qreal points, qreal devicePixelRatio, const QColor &tint);

/// Paints the drawing around `centre`, moved as little as puts it on whole pixels.
void paint(QPainter &painter, const QString &name, const QPointF &centre, qreal points, const QColor &tint);

/// An icon that paints itself when asked, in the text colour of the desktop; `QIcon::name()` gives the name
/// of the symbol back.
[[nodiscard]] QIcon icon(const QString &name);

} // namespace Symbols
