#pragma once

#include <QColor>
#include <QIcon>
#include <QImage>
#include <QString>

/// The program's own one-colour drawings, known by their names ("camera.fill"). They are part of the
/// program as SVG text; what is painted lives only as long as its picture. Main thread.
namespace Symbols {

/// The drawing in `tint`, in a square of `points`, crisp at `devicePixelRatio`. A name without a drawing is a
/// programming error.
[[nodiscard]] QImage image(const QString &name, qreal points, qreal devicePixelRatio, const QColor &tint);

/// An icon that paints itself when asked, in the text colour of the desktop; `QIcon::name()` gives the name
/// of the symbol back.
[[nodiscard]] QIcon icon(const QString &name);

} // namespace Symbols
