#include "paintTextShadow.h"

#include <QImage>
#include <QPainter>

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <vector>

namespace {

/// The weights of a Gaussian's pixels from the middle outwards, in sum 1 over both sides.
std::vector<float> weights(qreal deviation)
{
    constexpr qreal reach = 3;
    const int count = static_cast<int>(std::ceil(reach * deviation)) + 1;
    std::vector<float> result;
    float sum = 0;
    for (int distance = 0; distance < count; ++distance) {
        const auto weight = static_cast<float>(std::exp(-distance * distance / (2 * deviation * deviation)));
        result.push_back(weight);
        sum += distance == 0 ? weight : 2 * weight;
    }
    for (float &weight : result) {
        weight /= sum;
    }
    return result;
}

/// Along one line of an image whose pixels are `step` bytes apart.
void blurLine(
    uchar *line, std::ptrdiff_t step, int count, const std::vector<float> &kernel,
    std::vector<uchar> &scratch)
{
    for (int index = 0; index < count; ++index) {
        scratch[static_cast<std::size_t>(index)] = line[index * step];
    }
    const int reach = static_cast<int>(kernel.size()) - 1;
    for (int index = 0; index < count; ++index) {
        float sum = 0;
        const int last = std::min(count - 1, index + reach);
        for (int other = std::max(0, index - reach); other <= last; ++other) {
            sum += kernel[static_cast<std::size_t>(std::abs(other - index))] *
                   static_cast<float>(scratch[static_cast<std::size_t>(other)]);
        }
        line[index * step] = static_cast<uchar>(std::lround(sum));
    }
}

void blur(QImage &mask, qreal deviation)
{
    const std::vector<float> kernel = weights(deviation);
    std::vector<uchar> scratch(static_cast<std::size_t>(std::max(mask.width(), mask.height())));
    for (int y = 0; y < mask.height(); ++y) {
        blurLine(mask.scanLine(y), 1, mask.width(), kernel, scratch);
    }
    for (int x = 0; x < mask.width(); ++x) {
        blurLine(mask.bits() + x, mask.bytesPerLine(), mask.height(), kernel, scratch);
    }
}

} // namespace

void paintTextShadow(
    QPainter &painter, const QRect &rect, const QString &text, const TextShadow &shadow, const QColor &color)
{
    const qreal scale = painter.deviceTransform().m11();
    // A mask can't tell its pixel ratio to the painter; an image with colours can.
    QImage picture((QSizeF(rect.size()) * scale).toSize(), QImage::Format_ARGB32_Premultiplied);
    picture.setDevicePixelRatio(scale);
    picture.fill(Qt::transparent);
    QPainter writer(&picture);
    writer.setFont(painter.font());
    writer.setPen(Qt::black);
    writer.drawText(QRect(QPoint(), rect.size()), Qt::AlignCenter | Qt::TextSingleLine, text);
    writer.end();

    QImage mask = picture.convertToFormat(QImage::Format_Alpha8);
    blur(mask, shadow.blur / 2 * scale);
    mask.setDevicePixelRatio(scale);
    picture.fill(color);
    QPainter tinter(&picture);
    tinter.setCompositionMode(QPainter::CompositionMode_DestinationIn);
    tinter.drawImage(0, 0, mask);
    tinter.end();
    painter.drawImage(QPointF(rect.topLeft()) + QPointF(0, shadow.offset), picture);
}
