#include "screenshots.h"

#include <png.h>

#include <algorithm>
#include <cmath>

namespace {

/// A number that depends on nothing but its arguments.
quint32 noise(int x, int y)
{
    quint32 value = static_cast<quint32>(x) * 0x9E37'79B1U ^ static_cast<quint32>(y) * 0x85EB'CA77U;
    value = (value ^ value >> 15) * 0x2C1B'3C6DU;
    return value ^ value >> 12;
}

/// Dark glyphs of 7 × 12 pixels with soft edges, from an alphabet of 40, in lines of words.
QRgb text(int x, int y, QRgb paper)
{
    constexpr int lineHeight = 18;
    constexpr int glyphWidth = 8;
    const int line = y / lineHeight;
    const int letter = x / glyphWidth;
    const int column = x % glyphWidth;
    const int row = y % lineHeight - 3;
    const int lineLength = 40 + static_cast<int>(noise(line, 7) % 70);
    const bool isSpace = noise(letter, line) % 6 == 0;
    if (row < 0 || row >= 12 || column == 7 || isSpace || letter % 160 > lineLength) {
        return paper;
    }
    const quint32 ink = noise(column / 2, row / 2 + static_cast<int>(noise(letter, line) % 40) * 16) % 8;
    const int shade = ink < 4 ? 255 : ink < 5 ? 160 : 40;
    return qRgb(qRed(paper) * shade / 255, qGreen(paper) * shade / 255, qBlue(paper) * shade / 255);
}

QRgb photo(int x, int y)
{
    const auto grain = static_cast<int>(noise(x, y) % 9) - 4;
    const double wave = std::sin(x * 0.011) * 50 + std::sin(y * 0.017 + x * 0.003) * 40;
    const auto channel = [grain, wave](double base) {
        return std::clamp(static_cast<int>(base + wave) + grain, 0, 255);
    };
    return qRgb(channel(120), channel(100 + y * 0.02), channel(140 - x * 0.01));
}

QRgb mixed(int x, int y, QSize size)
{
    const int titleBar = size.height() / 30;
    if (y < titleBar) {
        return qRgb(40 + y, 44 + y, 52 + y);
    }
    if (x < size.width() / 5) {
        return (y / 32) % 2 == 0 ? qRgb(245, 245, 247) : text(x, y, qRgb(235, 235, 240));
    }
    if (x > size.width() * 2 / 3 && y > size.height() / 2) {
        return photo(x, y);
    }
    if (y > size.height() * 3 / 4) {
        return qRgb(x * 200 / size.width(), 80, y * 200 / size.height());
    }
    return text(x, y, qRgb(255, 255, 255));
}

} // namespace

QImage screenshots::make(Kind kind, QSize size)
{
    QImage image(size, QImage::Format_RGB888);
    for (int y = 0; y < size.height(); ++y) {
        uchar *to = image.scanLine(y);
        for (int x = 0; x < size.width(); ++x) {
            const QRgb color = kind == Kind::Text    ? text(x, y, qRgb(250, 250, 245))
                               : kind == Kind::Photo ? photo(x, y)
                                                     : mixed(x, y, size);
            *to++ = static_cast<uchar>(qRed(color));
            *to++ = static_cast<uchar>(qGreen(color));
            *to++ = static_cast<uchar>(qBlue(color));
        }
    }
    return image;
}

QByteArray screenshots::encoded(const QImage &image)
{
    const bool hasAlpha = image.hasAlphaChannel();
    const QImage rows = image.convertToFormat(hasAlpha ? QImage::Format_RGBA8888 : QImage::Format_RGB888);
    QByteArray bytes;
    png_structp png = png_create_write_struct(PNG_LIBPNG_VER_STRING, nullptr, nullptr, nullptr);
    png_infop info = png_create_info_struct(png);
    png_set_write_fn(
        png, &bytes,
        [](png_structp self, png_bytep data, size_t count) {
            static_cast<QByteArray *>(png_get_io_ptr(self))
                ->append(reinterpret_cast<const char *>(data), static_cast<qsizetype>(count));
        },
        nullptr);
    png_set_IHDR(
        png, info, static_cast<png_uint_32>(rows.width()), static_cast<png_uint_32>(rows.height()), 8,
        hasAlpha ? PNG_COLOR_TYPE_RGB_ALPHA : PNG_COLOR_TYPE_RGB, PNG_INTERLACE_NONE,
        PNG_COMPRESSION_TYPE_DEFAULT, PNG_FILTER_TYPE_DEFAULT);
    png_write_info(png, info);
    for (int y = 0; y < rows.height(); ++y) {
        png_write_row(png, rows.constScanLine(y));
    }
    png_write_end(png, info);
    png_destroy_write_struct(&png, &info);
    return bytes;
}
