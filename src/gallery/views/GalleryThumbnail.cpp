#include "GalleryThumbnail.h"

#include "Theme.h"
#include "Typography.h"
#include "thumbnailPainting.h"
#include "thumbnailPictures.h"

#include <QEvent>
#include <QPainter>
#include <QStyle>

namespace {

using thumbnailPainting::Badge;

constexpr int captionGap = 6;
constexpr int captionIndent = 4;
constexpr int badgeGap = 6;
constexpr qreal hoverLift = 2;
constexpr qreal pressedScale = 0.98;
constexpr qreal smallestBadgeScale = 0.8;
/// In grids of such cells the badges are smaller.
constexpr int smallCellWidth = 80;

} // namespace

GalleryThumbnail::GalleryThumbnail(QWidget *parent)
    : QWidget(parent),
      m_hover(std::chrono::milliseconds(120), Motion::Kind::Movement),
      m_ring(std::chrono::milliseconds(100), Motion::Kind::Fade),
      m_badge(std::chrono::milliseconds(120), Motion::Kind::Movement),
      m_presence(std::chrono::milliseconds(150), Motion::Kind::Fade)
{
    setAttribute(Qt::WA_TransparentForMouseEvents);
    setFocusPolicy(Qt::NoFocus);
    setFont(::font(TextStyle::Monospaced));
    repaintWithTheme(*this);
}

GalleryThumbnail::~GalleryThumbnail() = default;

QString GalleryThumbnail::caption() const
{
    return m_frameNumber && showCaption() ? QStringLiteral("%1").arg(*m_frameNumber, 2, 10, QLatin1Char('0'))
                                          : QString();
}

void GalleryThumbnail::setUp(
    const ScreenshotItem &screenshot, const GalleryGridMetrics &metrics, Selection selection)
{
    m_ticket.reset();
    m_screenshot = screenshot;
    m_metrics = metrics;
    m_isUnreadable = false;
    m_attention = {};
    m_thumbnailImage = QImage();
    m_framedImage = QImage();
    m_selection = selection;
    m_hover.jump(0);
    m_ring.jump(isSelected() ? 1 : 0);
    m_badge.jump(isSelected() ? 1 : 0);
    m_presence.jump(0);
    resize(QSize(metrics.cellWidth, metrics.rowHeight()) + QSize(outset, outset) * 2);
    update();
}

void GalleryThumbnail::setFrameNumber(std::optional<int> number)
{
    if (number != m_frameNumber) {
        m_frameNumber = number;
        update();
    }
}

void GalleryThumbnail::setSelection(Selection selection)
{
    if (selection == m_selection) {
        return;
    }
    m_selection = selection;
    m_ring.run(*this, isSelected() ? 1 : 0);
    m_badge.run(*this, isSelected() ? 1 : 0);
    update();
}

void GalleryThumbnail::setAttention(const Attention &attention)
{
    if (attention == m_attention) {
        return;
    }
    m_attention = attention;
    m_hover.run(*this, attention.isHovered ? 1 : 0);
    update();
}

void GalleryThumbnail::load(ThumbnailLoader::Priority priority)
{
    if (m_ticket) {
        m_ticket->setPriority(priority);
    } else if (m_thumbnailImage.isNull() && !m_isUnreadable) {
        request(priority);
    }
}

void GalleryThumbnail::reload(ThumbnailLoader::Priority priority)
{
    m_isUnreadable = false;
    request(priority);
}

void GalleryThumbnail::request(ThumbnailLoader::Priority priority)
{
    ThumbnailLoader &loader = ThumbnailLoader::shared();
    const int pixels = ThumbnailLoader::maximumPixelSize(m_metrics.cellWidth, m_metrics.cellHeight);
    const QImage cached = loader.cached(m_screenshot.id, pixels);
    if (!cached.isNull()) {
        setThumbnailImage(cached, Appearing::AtOnce);
        return;
    }
    m_ticket = loader.load(m_screenshot.id, pixels, priority, [this](const QImage &image) {
        m_ticket.reset();
        setThumbnailImage(image, Appearing::Fading);
    });
}

void GalleryThumbnail::setThumbnailImage(const QImage &image, Appearing appearing)
{
    const bool replacesImage = !m_thumbnailImage.isNull();
    m_thumbnailImage = image;
    m_framedImage = QImage();
    m_isUnreadable = image.isNull();
    if (appearing == Appearing::AtOnce || replacesImage) {
        m_presence.jump(1);
    } else {
        m_presence.run(*this, 1);
    }
    update();
}

bool GalleryThumbnail::event(QEvent *event)
{
    if (event->type() == QEvent::LayoutDirectionChange) {
        update();
    }
    return QWidget::event(event);
}

void GalleryThumbnail::hideEvent(QHideEvent *event)
{
    QWidget::hideEvent(event);
    m_framedImage = QImage();
}

QRect GalleryThumbnail::frame() const
{
    return {QPoint(outset, outset), imageSize()};
}

QRectF GalleryThumbnail::badgeBox(qreal side) const
{
    const QRectF image = frame();
    const bool isMirrored = layoutDirection() == Qt::RightToLeft;
    const qreal x = isMirrored ? image.left() + badgeGap : image.right() - badgeGap - side;
    return {x, image.bottom() - badgeGap - side, side, side};
}

qreal GalleryThumbnail::selectionBadgeSide() const
{
    return m_metrics.cellWidth > smallCellWidth ? 20 : 16;
}

void GalleryThumbnail::paintEvent(QPaintEvent * /*event*/)
{
    QPainter painter(this);
    painter.setRenderHints(QPainter::Antialiasing | QPainter::SmoothPixmapTransform);
    const ThumbnailFrame own{
        .rect = frame(),
        .cornerRadius = cornerRadius(),
        .pixelRatio = thumbnailPainting::pixelRatio(painter),
    };
    frameImage(own);
    paintCaption(painter);
    paintCell(painter, own);
}

void GalleryThumbnail::paintCell(QPainter &painter, const ThumbnailFrame &frame) const
{
    if (m_attention.isPressed) {
        thumbnailPainting::alignToPixels(painter, frame.rect.topLeft());
        const QPointF centre = QRectF(frame.rect).center();
        painter.translate(centre);
        painter.scale(pressedScale, pressedScale);
        painter.translate(-centre);
    } else {
        painter.translate(0, -hoverLift * m_hover.value());
        thumbnailPainting::alignToPixels(painter, frame.rect.topLeft());
        painter.setOpacity(m_hover.value());
        if (painter.opacity() > 0) {
            thumbnailPainting::paintShadow(painter, frame);
        }
        painter.setOpacity(1);
    }
    paintThumbnail(painter, frame);
    paintSigns(painter, frame);
}

void GalleryThumbnail::frameImage(const ThumbnailFrame &frame)
{
    if (!m_thumbnailImage.isNull() &&
        (m_framedImage.isNull() || m_framedImage.devicePixelRatio() != frame.pixelRatio)) {
        m_framedImage = thumbnailPictures::framed(m_thumbnailImage, frame);
    }
}

void GalleryThumbnail::paintThumbnail(QPainter &painter, const ThumbnailFrame &frame) const
{
    const bool isCovered = m_presence.value() == 1 && thumbnailPictures::covers(m_thumbnailImage);
    if (!isCovered) {
        thumbnailPainting::paintPlaceholder(painter, frame);
    }
    if (!m_framedImage.isNull()) {
        painter.setOpacity(m_presence.value());
        painter.drawImage(frame.rect.topLeft(), m_framedImage);
        if (m_attention.isPressed) {
            thumbnailPainting::paintShade(painter, frame);
        } else if (m_hover.value() > 0) {
            painter.setOpacity(m_presence.value() * m_hover.value());
            thumbnailPainting::paintLight(painter, frame);
        }
        painter.setOpacity(1);
    } else if (m_isUnreadable) {
        thumbnailPainting::paintUnreadable(painter, frame);
    }
    thumbnailPainting::paintEdge(painter, frame);
}

void GalleryThumbnail::paintSigns(QPainter &painter, const ThumbnailFrame &frame) const
{
    if (m_ring.value() > 0) {
        painter.setOpacity(m_ring.value());
        thumbnailPainting::paintSelectionRing(painter, frame);
        painter.setOpacity(1);
    }
    if (isSelectionMode()) {
        const QRectF box = badgeBox(selectionBadgeSide());
        const qreal scale =
            isSelected() ? smallestBadgeScale + (1 - smallestBadgeScale) * m_badge.value() : 1;
        QRectF scaled(QPointF(), box.size() * scale);
        scaled.moveCenter(box.center());
        thumbnailPainting::paintBadge(painter, scaled, isSelected() ? Badge::Selected : Badge::Unselected);
    } else if (m_hover.value() > 0 && !m_attention.isPressed) {
        painter.setOpacity(m_hover.value());
        thumbnailPainting::paintBadge(
            painter, badgeBox(m_metrics.cellWidth > smallCellWidth ? 24 : 20), Badge::Copy);
        painter.setOpacity(1);
    }
    if (m_attention.hasFocus) {
        thumbnailPainting::paintFocusRing(painter, frame);
    }
}

void GalleryThumbnail::paintCaption(QPainter &painter) const
{
    const Theme &theme = Theme::current();
    const QRect line(
        outset + captionIndent, frame().bottom() + 1 + captionGap, m_metrics.cellWidth - 2 * captionIndent,
        lineHeight(TextStyle::Monospaced));
    painter.setPen(
        isSelected()                                      ? theme.blueText
        : m_attention.isHovered && !m_attention.isPressed ? theme.primary
                                                          : theme.secondary);
    painter.drawText(
        line,
        int(QStyle::visualAlignment(layoutDirection(), Qt::AlignLeft) | Qt::AlignVCenter |
            Qt::TextSingleLine),
        caption());
}
