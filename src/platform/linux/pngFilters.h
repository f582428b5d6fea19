#pragma once

#include <QtGlobal>

#include <cstddef>

/// As many bytes behind a row, and behind the one above it, may be read, whatever they are.
inline constexpr size_t pngRowPadding = 4;

/// Undoes the filter of a row in place (PNG specification, 9.2). `bytesPerPixel` is 1 to 4. `above` is the
/// row before, unfiltered, or zeros. False if there is no such filter.
[[nodiscard]] bool
unfilterPngRow(int filter, uchar *row, const uchar *above, size_t rowBytes, size_t bytesPerPixel);
