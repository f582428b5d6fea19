#include "pngThumbnail.h"

#include "AreaAverage.h"
#include "LibpngRows.h"
#include "PngRows.h"
#include "thumbnailSize.h"

#include <unistd.h>

namespace {

/// IHDR, which comes first; unchecked.
std::optional<PngHeader> header(int descriptor)
{
    constexpr off_t position = 16;
    std::array<uchar, PngHeader::length> contents = {};
    if (::pread(descriptor, contents.data(), contents.size(), position) != ssize_t(contents.size())) {
        return std::nullopt;
    }
    return PngHeader::parse(contents);
}

template <typename Rows> std::optional<QImage> averaged(Rows rows, int maximumPixelSize)
{
    if (!rows.readHeader() || !isAcceptableImageSize(rows.size())) {
        return std::nullopt;
    }
    const QSize size = rows.size();
    AreaAverage average(size, thumbnailSize(size, maximumPixelSize), rows.channels());
    if (average.image().isNull()) {
        return std::nullopt;
    }
    for (int y = 0; y < size.height(); ++y) {
        const uchar *const row = rows.readRow();
        if (row == nullptr) {
            return std::nullopt;
        }
        average.addRow(row);
    }
    if (!rows.readEnd()) {
        return std::nullopt;
    }
    return average.image();
}

} // namespace

bool isInterlacedPng(int descriptor)
{
    const auto read = header(descriptor);
    return read && read->isInterlaced;
}

std::optional<QImage> pngThumbnail(int descriptor, int maximumPixelSize)
{
    const auto read = header(descriptor);
    if (!read) {
        return std::nullopt;
    }
    return PngRows::canRead(*read) ? averaged(PngRows(descriptor), maximumPixelSize)
                                   : averaged(LibpngRows(descriptor), maximumPixelSize);
}
