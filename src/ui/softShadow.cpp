#include "softShadow.h"

#include <QPainter>

#include <cmath>
#include <cstddef>
#include <vector>

namespace {

/// One pass of a running average over `radius` pixels to either side, along one line of the image.
void averageLine(uchar *line, std::ptrdiff_t step, int count, int radius, std::vector<uchar> &scratch)
{
    const int width = 2 * radius + 1;
    const auto at = [line, step, count](int index) {
        return index >= 0 && index < count ? int(line[index * step]) : 0;
    };
    int sum = 0;
    for (int index = -radius; index < radius; ++index) {
        sum += at(index);
    }
    for (int index = 0; index < count; ++index) {
        sum += at(index + radius);
        scratch[std::size_t(index)] = uchar(sum / width);
        sum -= at(index - radius);
    }
    for (int index = 0; index < count; ++index) {
        line[index * step] = scratch[std::size_t(index)];
    }
}

/// Three running averages, which come as near to a Gaussian blur as an eye can tell.
void blur(QImage &mask, int points)
{
    // A blur of n points is a Gaussian of n / 2; three boxes of this radius have its variance.
    const int radius = qRound((std::sqrt(4.0 * (points / 2.0) * (points / 2.0) + 1) - 1) / 2);
    std::vector<uchar> scratch(std::size_t(qMax(mask.width(), mask.height())));
    for (int pass = 0; pass < 3; ++pass) {
        for (int y = 0; y < mask.height(); ++y) {
            averageLine(mask.scanLine(y), 1, mask.width(), radius, scratch);
        }
        for (int x = 0; x < mask.width(); ++x) {
            averageLine(mask.bits() + x, mask.bytesPerLine(), mask.height(), radius, scratch);
        }
    }
}

} // namespace

QImage
renderShadow(const QPainterPath &outline, const QRect &area, const SoftShadow &shadow, const QColor &color)
{
    QImage mask(area.size(), QImage::Format_Alpha8);
    mask.fill(0);
    QPainter maskPainter(&mask);
    maskPainter.setRenderHint(QPainter::Antialiasing);
    maskPainter.translate(QPointF(-area.topLeft()) + QPointF(0, shadow.offset));
    maskPainter.fillPath(outline, Qt::black);
    maskPainter.end();
    blur(mask, shadow.blur);

    QImage tinted(area.size(), QImage::Format_ARGB32_Premultiplied);
    tinted.fill(color);
    QPainter painter(&tinted);
    painter.setCompositionMode(QPainter::CompositionMode_DestinationIn);
    painter.drawImage(0, 0, mask);
    return tinted;
}
