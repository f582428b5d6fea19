#pragma once

#include <QApplication>
#include <QImage>
#include <QPalette>
#include <QWidget>

#include <initializer_list>

/// The pixel ratios that a control has to look right at.
constexpr std::initializer_list<qreal> pixelRatios{1, 1.5, 2};

/// While it lives, the desktop's palette is dark or light.
class ScopedLook final {
public:
    enum class Look { Light, Dark };

    explicit ScopedLook(Look look) : m_before(QApplication::palette())
    {
        QApplication::setPalette(
            QPalette(look == Look::Dark ? QColor(0x22, 0x24, 0x27) : QColor(0xEC, 0xED, 0xEF)));
    }

    ~ScopedLook() { QApplication::setPalette(m_before); }

    Q_DISABLE_COPY_MOVE(ScopedLook)

private:
    QPalette m_before;
};

/// The widget as it is painted with this many pixels to a point on a ground of one colour.
inline QImage rendered(QWidget &widget, qreal pixelRatio = 1, const QColor &ground = Qt::transparent)
{
    QImage image((QSizeF(widget.size()) * pixelRatio).toSize(), QImage::Format_ARGB32_Premultiplied);
    image.setDevicePixelRatio(pixelRatio);
    image.fill(ground);
    widget.render(&image, {}, {}, QWidget::DrawChildren);
    return image;
}

/// The colour at a point in logical pixels.
inline QColor colorAt(const QImage &image, QPointF point)
{
    return image.pixelColor((point * image.devicePixelRatio()).toPoint());
}

/// Whether the two differ by no more than what rounding does.
inline bool isNearly(const QColor &one, const QColor &other, int tolerance = 2)
{
    return qAbs(one.red() - other.red()) <= tolerance && qAbs(one.green() - other.green()) <= tolerance &&
           qAbs(one.blue() - other.blue()) <= tolerance && qAbs(one.alpha() - other.alpha()) <= tolerance;
}
