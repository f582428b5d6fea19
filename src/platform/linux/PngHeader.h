#pragma once

#include <QSize>

#include <array>
#include <optional>

/// What IHDR says about the pixels.
struct PngHeader {
    enum ColorType { Gray = 0, Rgb = 2, Palette = 3, GrayAlpha = 4, Rgba = 6 };

    static constexpr size_t length = 13;

    QSize size;
    int bitDepth = 8;
    ColorType colorType = Rgb;
    bool isInterlaced = false;

    /// None for what no PNG may say.
    [[nodiscard]] static std::optional<PngHeader> parse(const std::array<uchar, length> &contents);

    /// Of the file's first chunk, whose checksum isn't looked at. The descriptor's position stays as it was.
    [[nodiscard]] static std::optional<PngHeader> ofFile(int descriptor);
};
