#pragma once

#include <QByteArray>
#include <QImage>

/// Pictures like those that people capture, the same at every run, and the files that they become.
namespace screenshots {

enum class Kind {
    Text,  ///< Lines of small glyphs on one colour
    Mixed, ///< windows: flat areas, slopes, some text, a photograph
    Photo  ///< noise on soft slopes, all over
};

[[nodiscard]] QImage make(Kind kind, QSize size);

/// As a PNG, by libpng's own choice of filters and at its own level, which is what most capture tools write.
/// Of three channels, or of four for a format with alpha.
[[nodiscard]] QByteArray encoded(const QImage &image);

} // namespace screenshots
