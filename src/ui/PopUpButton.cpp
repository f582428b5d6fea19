#include "PopUpButton.h"

#include "AccessibleRole.h"
#include "PopUpMenu.h"
#include "Theme.h"
#include "Typography.h"
#include "continuousRoundedRect.h"
#include "paintFocusRing.h"

#include <QAction>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>
#include <QStyle>

namespace {

/// In points.
constexpr int faceHeight = 26;
constexpr qreal radius = 6;
constexpr int padding = 11;
constexpr int chevronsWidth = 8;
constexpr int chevronsMargin = 10;
constexpr int gapBeforeChevrons = 6;
constexpr int leastMenuWidth = 150;

constexpr qreal disabledOpacity = 0.45;

/// One pointing up and one pointing down around `centre`.
void paintChevrons(QPainter &painter, const QPointF &centre, const QColor &color)
{
    constexpr qreal halfWidth = 3;
    constexpr qreal distance = 1.75;
    constexpr qreal rise = 3;
    constexpr qreal stroke = 1.4;
    painter.setPen(QPen(color, stroke, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    painter.setBrush(Qt::NoBrush);
    for (const qreal direction : {-1.0, 1.0}) {
        const QPointF tip = centre + QPointF(0, direction * (distance + rise));
        const QPointF foot(halfWidth, -direction * rise);
        painter.drawPolyline(QPolygonF{tip + QPointF(-foot.x(), foot.y()), tip, tip + foot});
    }
}

} // namespace

PopUpButton::PopUpButton(QStringList choices, int width, QWidget *parent)
    : QAbstractButton(parent),
      m_choices(std::move(choices)),
      m_width(width)
{
    setAccessibleRole(*this, QAccessible::ButtonMenu);
    setFont(::font(TextStyle::Body));
    setAttribute(Qt::WA_Hover);
    setFocusPolicy(Qt::TabFocus); // a click leaves the keyboard where it is
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
    // By assistive programs, which need no pointer.
    connect(this, &QAbstractButton::clicked, this, [this] { openMenu(OpenedBy::Keyboard); });
    repaintWithTheme(*this);
}

void PopUpButton::setShownText(const QString &text)
{
    setText(text);
    setAccessibleDescription(text);
    setToolTip(fontMetrics().horizontalAdvance(text) > textBox().width() ? text : QString());
}

QSize PopUpButton::sizeHint() const
{
    return QSize(m_width, faceHeight).grownBy(QMargins(outset, outset, outset, outset));
}

bool PopUpButton::hitButton(const QPoint &position) const
{
    return box().contains(position);
}

QRect PopUpButton::textBox() const
{
    QRect place(QPoint(outset, outset), QSize(m_width, faceHeight));
    place.adjust(padding, 0, -(chevronsMargin + chevronsWidth + gapBeforeChevrons), 0);
    return place;
}

void PopUpButton::openMenu(OpenedBy means)
{
    auto *const menu = new PopUpMenu(leastMenuWidth, this);
    menu->setAttribute(Qt::WA_DeleteOnClose);
    QAction *current = nullptr;
    for (int index = 0; index < m_choices.size(); ++index) {
        QAction *const action = menu->addAction(m_choices[index]);
        action->setCheckable(true);
        action->setChecked(m_choices[index] == text());
        connect(action, &QAction::triggered, this, [this, index] { Q_EMIT choiceMade(index); });
        if (action->isChecked() || current == nullptr) {
            current = action;
        }
    }
    setDown(true);
    connect(menu, &QMenu::aboutToHide, this, [this] { setDown(false); });
    menu->popUpBeside({mapToGlobal(box().topLeft()), box().size()});
    if (means == OpenedBy::Keyboard) {
        menu->setActiveAction(current);
    }
}

void PopUpButton::mousePressEvent(QMouseEvent *event)
{
    if (event->button() == Qt::LeftButton && hitButton(event->position().toPoint())) {
        openMenu(OpenedBy::Pointer);
    } else {
        event->ignore();
    }
}

void PopUpButton::keyPressEvent(QKeyEvent *event)
{
    switch (event->key()) {
    case Qt::Key_Space:
    case Qt::Key_Return:
    case Qt::Key_Enter:
    case Qt::Key_Up:
    case Qt::Key_Down:
        openMenu(OpenedBy::Keyboard);
        break;
    default:
        QAbstractButton::keyPressEvent(event);
    }
}

void PopUpButton::paintEvent(QPaintEvent * /*event*/)
{
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setOpacity(isEnabled() ? 1 : disabledOpacity);
    paintFace(painter);
    paintLabel(painter);
    if (hasFocus()) {
        painter.setOpacity(1);
        paintFocusRing(painter, box(), radius);
    }
}

void PopUpButton::paintFace(QPainter &painter) const
{
    const Theme &theme = Theme::current();
    const QPainterPath shape = continuousRoundedRect(box(), radius);
    painter.fillPath(shape.translated(0, 1), theme.controlShadow);
    // The outer half of a line of 1; the face covers the inner one.
    painter.strokePath(shape, QPen(theme.border, 1));
    const bool isHovered = isEnabled() && underMouse();
    painter.fillPath(shape, isDown() ? theme.facePressed : isHovered ? theme.faceHover : theme.face);
}

void PopUpButton::paintLabel(QPainter &painter) const
{
    const Theme &theme = Theme::current();
    const QRect place = QStyle::visualRect(layoutDirection(), rect(), textBox());
    painter.setPen(theme.primary);
    painter.drawText(
        place, static_cast<int>(Qt::AlignLeading | Qt::AlignVCenter) | Qt::TextSingleLine,
        fontMetrics().elidedText(text(), Qt::ElideRight, place.width()));
    const QRect column(
        box().right() + 1 - chevronsMargin - chevronsWidth, box().top(), chevronsWidth, box().height());
    paintChevrons(
        painter, QRectF(QStyle::visualRect(layoutDirection(), rect(), column)).center(), theme.secondary);
}
