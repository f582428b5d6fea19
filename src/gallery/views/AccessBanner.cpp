#include "AccessBanner.h"

#include "Symbols.h"
#include "Theme.h"
#include "Typography.h"
#include "continuousRoundedRect.h"
#include "paintFocusRing.h"

#include <QKeyEvent>
#include <QPainter>
#include <QStyle>

namespace {

/// In points.
constexpr qreal radius = 10;
constexpr int padding = 16;
constexpr int symbolSide = 20;
constexpr int gapAfterSymbol = 12;
constexpr int chevronSide = 16;
constexpr int gapBetweenLines = 2;

/// In as many lines as the place has room for.
void drawText(QPainter &painter, const QRect &place, TextStyle style, const QString &text)
{
    painter.setFont(font(style));
    const bool isOneLine = place.height() < 2 * lineHeight(style);
    constexpr int alignment = Qt::AlignLeading | Qt::AlignVCenter;
    if (isOneLine) {
        const QString shown = painter.fontMetrics().elidedText(text, Qt::ElideRight, place.width());
        painter.drawText(place, alignment | Qt::TextSingleLine, shown);
    } else {
        painter.drawText(place, alignment | Qt::TextWordWrap, text);
    }
}

} // namespace

AccessBanner::AccessBanner(QWidget *parent)
    : QAbstractButton(parent),
      m_detail(tr("Deskbroom needs access to your Desktop folder. Click to open System Settings."))
{
    setText(tr("Desktop Folder Access Required"));
    setAccessibleDescription(m_detail);
    setAttribute(Qt::WA_Hover);
    setFocusPolicy(Qt::TabFocus); // a click leaves the keyboard where it is
    setFixedHeight(faceHeight + 2 * outset);
    repaintWithTheme(*this);
}

bool AccessBanner::hitButton(const QPoint &position) const
{
    return box().contains(position);
}

void AccessBanner::keyPressEvent(QKeyEvent *event)
{
    if (event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter) {
        click();
    } else {
        QAbstractButton::keyPressEvent(event);
    }
}

void AccessBanner::paintEvent(QPaintEvent * /*event*/)
{
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    paintFace(painter);
    paintTexts(painter);
    paintSymbols(painter);
}

void AccessBanner::paintFace(QPainter &painter) const
{
    const Theme &theme = Theme::current();
    const QPainterPath shape =
        continuousRoundedRect(QRectF(box()).adjusted(0.25, 0.25, -0.25, -0.25), radius);
    painter.fillPath(shape, isDown() || underMouse() ? theme.bannerHover : theme.bannerFill);
    painter.strokePath(shape, QPen(theme.bannerLine, 0.5));
    if (hasFocus()) {
        paintFocusRing(painter, box(), radius);
    }
}

void AccessBanner::paintTexts(QPainter &painter) const
{
    const Theme &theme = Theme::current();
    const int left = padding + symbolSide + gapAfterSymbol;
    const int width = box().width() - left - padding - chevronSide - gapAfterSymbol;
    const int titleHeight = lineHeight(TextStyle::Headline);
    // In the settings' window it is too long for one line.
    const int detailLines =
        QFontMetrics(::font(TextStyle::Subheadline)).horizontalAdvance(m_detail) > width ? 2 : 1;
    const int detailHeight = detailLines * lineHeight(TextStyle::Subheadline);
    QRect place(
        box().left() + left, box().top() + (faceHeight - titleHeight - gapBetweenLines - detailHeight) / 2,
        width, titleHeight);
    painter.setPen(theme.primary);
    drawText(painter, mirrored(place), TextStyle::Headline, text());
    place = QRect(place.left(), place.bottom() + 1 + gapBetweenLines, width, detailHeight);
    painter.setPen(theme.secondary);
    drawText(painter, mirrored(place), TextStyle::Subheadline, m_detail);
}

void AccessBanner::paintSymbols(QPainter &painter) const
{
    const QColor color = Theme::current().orangeText;
    const qreal ratio = devicePixelRatioF();
    const auto square = [this](int left, int side) {
        return mirrored({left, box().top() + (faceHeight - side) / 2, side, side});
    };
    painter.drawImage(
        square(box().left() + padding, symbolSide).topLeft(),
        Symbols::image(QStringLiteral("folder.fill"), symbolSide, ratio, color));
    // The only chevron that there is points to the beginning of a line.
    QImage chevron = Symbols::image(QStringLiteral("chevron.left"), chevronSide, ratio, color);
    if (layoutDirection() == Qt::LeftToRight) {
        chevron.mirror(true, false);
    }
    painter.drawImage(square(box().right() + 1 - padding - chevronSide, chevronSide).topLeft(), chevron);
}

/// `rectangle` is given for a desktop that writes from left to right.
QRect AccessBanner::mirrored(const QRect &rectangle) const
{
    return QStyle::visualRect(layoutDirection(), box(), rectangle);
}
