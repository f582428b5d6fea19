#include "ScreenshotPreview.h"

#include "Spinner.h"
#include "Theme.h"
#include "continuousRoundedRect.h"

#include <QPainter>

namespace {

constexpr qreal radius = 4;
constexpr qreal edgeWidth = 0.5;

/// An image a pixel wide and a thousand high still shows as a line.
QSize fitted(const QSize &image, const QSize &frame)
{
    return image.scaled(frame, Qt::KeepAspectRatio).expandedTo({1, 1});
}

} // namespace

ScreenshotPreview::ScreenshotPreview(QWidget *parent) : QLabel(parent), m_spinner(new Spinner(this))
{
    QSizePolicy policy(QSizePolicy::Expanding, QSizePolicy::Fixed);
    policy.setHeightForWidth(true);
    setSizePolicy(policy);
    repaintWithTheme(*this);
}

void ScreenshotPreview::setImage(const QImage &image)
{
    m_scaledImage = QImage();
    m_spinner->hide();
    setAccessibleName(tr("Preview of the screenshot"));
    // The label keeps the image and tells assistive programs that it is one.
    setPixmap(QPixmap::fromImage(image));
    updateGeometry();
}

int ScreenshotPreview::heightForWidth(int width) const
{
    return pixmap().isNull() ? placeholderHeight : fitted(pixmap().size(), {width, greatestHeight}).height();
}

QRect ScreenshotPreview::frame() const
{
    if (pixmap().isNull()) {
        return rect();
    }
    QRect frame(QPoint(), fitted(pixmap().size(), {width(), greatestHeight}));
    frame.moveCenter(rect().center());
    return frame;
}

void ScreenshotPreview::resizeEvent(QResizeEvent *event)
{
    QLabel::resizeEvent(event);
    QRect spinner(QPoint(), m_spinner->size());
    spinner.moveCenter(rect().center());
    m_spinner->setGeometry(spinner);
}

void ScreenshotPreview::paintEvent(QPaintEvent * /*event*/)
{
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    if (pixmap().isNull()) {
        painter.fillPath(continuousRoundedRect(frame(), radius), Theme::current().placeholder);
    } else {
        paintImage(painter);
    }
}

void ScreenshotPreview::paintImage(QPainter &painter)
{
    const QRectF area = frame();
    const QSize pixels = (area.size() * devicePixelRatioF()).toSize();
    if (m_scaledImage.size() != pixels) {
        m_scaledImage = pixmap().toImage().scaled(pixels, Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
        m_scaledImage.setDevicePixelRatio(devicePixelRatioF());
    }
    // Filled with a brush, not clipped: so the corners are smooth.
    painter.translate(area.topLeft());
    const QRectF shape(QPointF(), area.size());
    painter.fillPath(continuousRoundedRect(shape, radius), QBrush(m_scaledImage));
    constexpr qreal half = edgeWidth / 2;
    const QPainterPath edge = continuousRoundedRect(shape.adjusted(half, half, -half, -half), radius - half);
    painter.strokePath(edge, QPen(Theme::current().imageEdge, edgeWidth));
}
