#include "PngHeader.h"

#include <QtEndian>

#include <unistd.h>

namespace {

bool isPossible(int colorType, int bitDepth)
{
    switch (colorType) {
    case PngHeader::Gray:
        return bitDepth == 1 || bitDepth == 2 || bitDepth == 4 || bitDepth == 8 || bitDepth == 16;
    case PngHeader::Palette:
        return bitDepth == 1 || bitDepth == 2 || bitDepth == 4 || bitDepth == 8;
    case PngHeader::Rgb:
    case PngHeader::GrayAlpha:
    case PngHeader::Rgba:
        return bitDepth == 8 || bitDepth == 16;
    default:
        return false;
    }
}

} // namespace

std::optional<PngHeader> PngHeader::parse(const std::array<uchar, length> &contents)
{
    constexpr quint32 longestSide = 0x7FFF'FFFF;
    const auto width = qFromBigEndian<quint32>(contents.data());
    const auto height = qFromBigEndian<quint32>(contents.data() + 4);
    const auto [bitDepth, colorType, compression, filter, interlace] =
        std::array{contents[8], contents[9], contents[10], contents[11], contents[12]};
    if (width == 0 || width > longestSide || height == 0 || height > longestSide ||
        !isPossible(colorType, bitDepth) || compression != 0 || filter != 0 || interlace > 1) {
        return std::nullopt;
    }
    return PngHeader{
        .size = {static_cast<int>(width), static_cast<int>(height)},
        .bitDepth = bitDepth,
        .colorType = static_cast<ColorType>(colorType),
        .isInterlaced = interlace != 0};
}

std::optional<PngHeader> PngHeader::ofFile(int descriptor)
{
    constexpr off_t position = 16; // behind the signature, the length and the name
    std::array<uchar, length> contents = {};
    if (::pread(descriptor, contents.data(), contents.size(), position) != ssize_t(contents.size())) {
        return std::nullopt;
    }
    return parse(contents);
}
